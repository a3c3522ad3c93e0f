#pragma once
// The program on a Linux desktop: Qt's application object, its event loop and dialogs.

#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/Descriptor.h"
#include "Karto/Platform/Linux/QtDescriptorWatch.h"
#include "Karto/Platform/Registration.h"

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
    // Timers and watches are deleted by the event loop, which runs no more when the program ends.
    struct LastDeletions {
        LastDeletions() = default;
        LastDeletions(const LastDeletions&) = delete;
        LastDeletions(LastDeletions&&) = delete;
        LastDeletions& operator=(const LastDeletions&) = delete;
        LastDeletions& operator=(LastDeletions&&) = delete;
        ~LastDeletions();
    };

    // Before the toolkit starts threads, which must not take the signals.
    Descriptor signals_;
    QApplication application_;
    LastDeletions lastDeletions_;
    QtDescriptorWatch descriptors_;
    Registration endings_;
};

} // namespace karto
