#pragma once
// The program on a Linux desktop: Qt's application object, its event loop and dialogs.

#include "Karto/Platform/ApplicationHost.h"

#include <QApplication>

namespace karto {

class QtApplicationHost final : public ApplicationHost {
public:
    // Takes main's arguments, which must outlive it. Requires an X display that can be reached.
    QtApplicationHost(int& argumentCount, char** arguments);

    std::size_t runAlert(const Alert& alert) override;
    void print(const std::string& text) override;

    // Opens the settings program of the desktop, if one is installed.
    static void openDesktopSettings();

    // Runs the event loop until quit() or an interrupt or termination signal, and returns the exit status.
    int run();
    static void quit(int exitStatus);

private:
    QApplication application_;
};

} // namespace karto
