#pragma once
// The program on a Linux desktop: Qt's application object, its event loop and dialogs.

#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/Descriptor.h"
#include "Karto/Platform/Linux/QtDescriptorWatch.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Registration.h"

#include <QApplication>

#include <cstdint>
#include <functional>
#include <utility>

namespace karto {

class SessionBus;

class QtApplicationHost final : public ApplicationHost {
public:
    enum class Session : std::uint8_t { x11, wayland };

    // Takes main's arguments, which must outlive it. Requires, for X11, a display that can be reached.
    QtApplicationHost(Session session, int& argumentCount, char** arguments);

    // Whether what it shows can be seen: in a Wayland session the toolkit may lack its part for that.
    [[nodiscard]] static bool isVisible();

    QtApplicationHost(const QtApplicationHost&) = delete;
    QtApplicationHost(QtApplicationHost&&) = delete;
    QtApplicationHost& operator=(const QtApplicationHost&) = delete;
    QtApplicationHost& operator=(QtApplicationHost&&) = delete;
    ~QtApplicationHost() override;

    // Activates a window of the toolkit, by its number on the display.
    using Activate = std::function<void(std::uint32_t window)>;

    void activateWith(Activate activate) { activate_ = std::move(activate); }

    // The panel that tells that; it stays for the next time.
    using FindAboutPanel = std::function<QWidget&(const About& about)>;

    void showAboutWith(FindAboutPanel findAboutPanel) { findAboutPanel_ = std::move(findAboutPanel); }

    // The bus of the session, which must outlive the event loop, may not answer: the toolkit must not wait
    // for it then.
    void guardAgainst(SessionBus& bus) { bus_ = &bus; }

    std::size_t runAlert(const Alert& alert) override;
    void showAbout(const About& about) override;
    void terminate() override;
    void print(const std::string& text) override;
    void openFile(const std::string& path, std::function<void(const std::string&)> onFailure) override;
    Registration observeTermination(std::function<void()> onTermination) override;

    // Opens the settings program of the desktop, if one is installed.
    static void openDesktopSettings();

    // Shows the window and makes it the active one.
    void present(QWidget& window) const;

    // Runs the event loop until quit() or an interrupt or termination signal, and returns the exit status.
    int run();
    static void quit(int exitStatus);

private:
    void hideSilentBus();

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
    SessionBus* bus_ = nullptr;
    Activate activate_;
    FindAboutPanel findAboutPanel_;
    Observers<> terminationObservers_;
};

} // namespace karto
