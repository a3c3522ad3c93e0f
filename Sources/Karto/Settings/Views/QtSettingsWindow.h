#pragma once
// The settings window on a Linux desktop.

#include "Karto/Settings/GeneralSettings.h"
#include "Karto/Settings/SettingsWindow.h"

#include <functional>
#include <string>

namespace karto {

class ApplicationHost;

// What the window needs beside the model. All of it outlives the window.
struct SettingsWindowNeeds {
    GeneralSettings::Services general;
    ApplicationHost& host;
    std::string configPath;
    // Makes a window the active one, in front of all others.
    std::function<void(WindowHandle)> activate;
};

// The part of the platform that Qt's own windows play. Requires a QApplication.
std::unique_ptr<SettingsWindow> makeQtSettingsWindow(SettingsModel& model, SettingsWindow::Events events,
                                                     const SettingsWindowNeeds& needs);

} // namespace karto
