#include "Karto/About/AboutPanel.h"
#include "Karto/Agent.h"
#include "Karto/AppInfo.h"
#include "Karto/Log.h"
#include "Karto/Overlay/OverlayContentView.h"
#include "Karto/Platform/Linux/ClockAlarm.h"
#include "Karto/Platform/Linux/DesktopEntries.h"
#include "Karto/Platform/Linux/InotifyFileWatch.h"
#include "Karto/Platform/Linux/LoginSettings.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Karto/Platform/Linux/QtApplicationHost.h"
#include "Karto/Platform/Linux/QtDescriptorWatch.h"
#include "Karto/Platform/Linux/QtDesktopTheme.h"
#include "Karto/Platform/Linux/QtFocus.h"
#include "Karto/Platform/Linux/QtKeyEvents.h"
#include "Karto/Platform/Linux/QtScheduler.h"
#include "Karto/Platform/Linux/SessionBus.h"
#include "Karto/Platform/Linux/SystemClock.h"
#include "Karto/Platform/Linux/Tray/BusTray.h"
#include "Karto/Platform/Linux/Tray/PopupMenu.h"
#include "Karto/Platform/Linux/Updates/FetchProgram.h"
#include "Karto/Platform/Linux/Updates/PackageCache.h"
#include "Karto/Platform/Linux/Updates/PackageInstaller.h"
#include "Karto/Platform/Linux/XdgAutostart.h"
#include "Karto/Platform/Platform.h"
#include "Karto/Platform/TrayItem.h"
#include "Karto/Platform/X11/Displays/Screens.h"
#include "Karto/Platform/X11/Keyboard/HotKeyCenter.h"
#include "Karto/Platform/X11/Keyboard/Keyboard.h"
#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"
#include "Karto/Platform/X11/Keyboard/ToolkitKeyboard.h"
#include "Karto/Platform/X11/Server/Activation.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/NestedServer.h"
#include "Karto/Platform/X11/Server/SingleInstance.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "Karto/Platform/X11/Stage/OverlayStage.h"
#include "Karto/Platform/X11/Tray/PanelLook.h"
#include "Karto/Platform/X11/Tray/TrayDock.h"
#include "Karto/Platform/X11/Windows/Accessibility.h"
#include "Karto/Platform/X11/Windows/ApplicationActivity.h"
#include "Karto/Settings/Views/QtSettingsWindow.h"
#include "Karto/Switcher/SwitcherPanelView.h"
#include "Karto/TrustAlert.h"
#include "Karto/Updates/FeedUpdater.h"
#include "Karto/Updates/UnconfiguredUpdater.h"
#include "Karto/Updates/Views/QtUpdateWindow.h"

#include <fmt/format.h>
#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr int failureStatus = 1;

// Fonts and desktop entries take a while to find the first time: after what a person waits for at the start,
// and before the person waits for what needs them.
constexpr std::chrono::milliseconds warmUpDelay{500};
constexpr karto::Rect warmUpFrame{.x = 0, .y = 0, .width = 400, .height = 300};

std::string environment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

std::string homeDirectory() {
    if (auto home = environment("HOME"); !home.empty()) {
        return home;
    }
    const passwd* user = getpwuid(getuid()); // NOLINT(concurrency-mt-unsafe)
    return user != nullptr ? user->pw_dir : "/";
}

// Below the person's home unless the session names another folder.
std::string stateFolder(const std::string& home) {
    const auto folder = environment("XDG_STATE_HOME");
    return folder.starts_with('/') ? folder : home + "/.local/state";
}

void complain(std::string_view sentence) { fmt::print(stderr, "karto: {}\n", sentence); }

// The program as it runs; `successor` becomes the path of the one that is to follow it, if any.
int run(int& argumentCount, char** arguments, std::string& successor) {
    using namespace karto;

    const auto home = homeDirectory();
    PosixFileSystem files;
    const SystemClock clock;
    FileCheckLog log(fmt::format("{}/{}", home, FileCheckLog::relativePath), files, clock, complain);
    const auto endWith = [&log](std::string_view sentence) {
        log.append(sentence);
        complain(sentence);
        return failureStatus;
    };

    // An X11 session may have inherited the other's socket.
    const auto sessionType = environment("XDG_SESSION_TYPE");
    const bool isWayland =
        sessionType.empty() ? !environment("WAYLAND_DISPLAY").empty() : sessionType == "wayland";
    const auto opened = x11::Connection::open();
    if (!opened && isWayland) {
        const int status = endWith(fmt::format(
            "startup: {}, and Karto cannot work in a Wayland session — quitting", opened.error()));
        QtApplicationHost host(QtApplicationHost::Session::wayland, argumentCount, arguments);
        if (QtApplicationHost::isVisible()) {
            explainDistrust(x11::waylandProblem(), host, QtApplicationHost::openDesktopSettings, log);
        }
        // The toolkit's side of Wayland, taken down in order, at times waits for a thread of its own forever.
        std::quick_exit(status);
    }
    if (!opened) {
        return endWith(fmt::format("startup: {} — quitting", opened.error()));
    }
    x11::Connection& connection = **opened;
    x11::SingleInstance instance(connection);
    const auto claimed = instance.claim();
    if (!claimed) {
        return endWith(fmt::format("startup: {} — quitting", claimed.error()));
    }
    if (*claimed == x11::SingleInstance::Outcome::handedOver) {
        return 0;
    }

    QtApplicationHost host(QtApplicationHost::Session::x11, argumentCount, arguments);
    QtScheduler scheduler;
    QtDescriptorWatch descriptors;
    SessionBus bus(descriptors);
    host.guardAgainst(bus);
    auto* const toolkit = static_cast<xcb_connection_t*>(toolkitConnection());
    x11::ToolkitActivation activation(connection, toolkit, scheduler);
    const auto activate = [&activation](std::uint32_t window) { activation.activate(window); };
    host.activateWith(activate);

    x11::WindowManager windowManager(connection);
    DesktopEntries installed(DesktopEntries::Places::ofSession());
    x11::Accessibility accessibility(connection, windowManager, scheduler, installed,
                                     {.ownProcess = getpid(),
                                      .isWayland = isWayland || x11::runsInsideWayland(connection),
                                      .openSettings = QtApplicationHost::openDesktopSettings});
    InotifyFileWatch fileWatch(descriptors);
    x11::Screens screens(connection, scheduler);
    x11::HotKeyCenter hotKeyCenter(connection, scheduler);
    x11::ModifierEvents modifierEvents(connection);
    x11::ToolkitKeyboard toolkitKeyboard(connection, toolkit);
    const auto focusMoves = observeFocus([&](std::uint32_t window) { toolkitKeyboard.focusMoved(window); });
    x11::ApplicationActivity activity(connection, accessibility, scheduler, getpid());
    QtDesktopTheme theme(bus);
    x11::OverlayStage stage(connection, windowManager, modifierEvents, theme, scheduler);

    PopupMenu popupMenu;
    x11::PanelLook panels(connection, scheduler);
    BusTray busTray(bus, scheduler, panels, [&popupMenu](const Menu& menu) { popupMenu.show(menu); });
    x11::TrayDock trayDock(connection, [&popupMenu](const Menu& menu, const PixelRect& anchor) {
        popupMenu.show(menu, anchor);
    });
    TrayItem trayItem(busTray, trayDock, scheduler);
    const auto autostart = XdgAutostart::Places::ofSession(home);
    XdgAutostart loginItem(files, autostart, [&autostart] { openLoginSettings(autostart.folder); });

    QtKeyEvents keyEvents(modifierEvents, [&connection](std::uint32_t key) {
        return x11::programKeyCode(connection, static_cast<xcb_keycode_t>(key));
    });

    ClockAlarm alarm(descriptors);
    FetchProgram fetcher(autostart.program);
    PackageCache packages(PackageCache::folderOf(home));
    PackageInstaller installer(files, PackageInstaller::Places::ofSystem(autostart.program), [&] {
        log.append("update: installed — starting the new version");
        successor = autostart.program;
        host.terminate();
    });
    std::unique_ptr<AboutPanel> aboutPanel;
    host.showAboutWith([&aboutPanel](const About& about) -> QWidget& {
        if (!aboutPanel) {
            aboutPanel = std::make_unique<AboutPanel>();
        }
        aboutPanel->tell(about);
        return *aboutPanel;
    });
    QtUpdateWindow updateWindow([&host](QWidget& window) { host.present(window); });
    UnconfiguredUpdater unconfiguredUpdater(host);
    std::optional<FeedUpdater> feedUpdater;
    if (auto source = AppInfo::updateSource()) {
        feedUpdater.emplace(FeedUpdater::Means{.course = {.fetcher = fetcher,
                                                          .store = packages,
                                                          .installer = installer,
                                                          .scheduler = scheduler,
                                                          .clock = clock},
                                               .window = updateWindow,
                                               .alarm = alarm,
                                               .files = files,
                                               .log = log},
                            *std::move(source),
                            fmt::format("{}/{}", stateFolder(home), UpdateMemory::relativePath));
    }

    OverlayPainter overlayPainter;
    SwitcherPainter switcherPainter;
    Agent agent({.host = host,
                 .scheduler = scheduler,
                 .files = files,
                 .fileWatch = fileWatch,
                 .accessibility = accessibility,
                 .screens = screens,
                 .hotKeyCenter = hotKeyCenter,
                 .modifierEvents = modifierEvents,
                 .keyEvents = keyEvents,
                 .stage = stage,
                 .activity = activity,
                 .statusItem = trayItem,
                 .loginItem = loginItem,
                 .instance = instance,
                 .updater = feedUpdater ? static_cast<UpdaterEngine&>(*feedUpdater) : unconfiguredUpdater},
                {.overlay = [&](const auto& view,
                                const StageStyle& style) { return overlayPainter.paint(view, style); },
                 .switcher = [&](const auto& view,
                                 const StageStyle& style) { return switcherPainter.paint(view, style); },
                 .settings =
                     [&](SettingsModel& model, SettingsWindow::Events events,
                         const GeneralSettings::Services& general) {
                         return makeQtSettingsWindow(
                             model, std::move(events),
                             {.general = general,
                              .host = host,
                              .configPath = fmt::format("{}/{}", home, ConfigStore::relativePath),
                              .activate = [&activate](WindowHandle window) { activate(window.id); }});
                     }},
                log, home);
    if (!agent.start()) {
        return Agent::notTrustedStatus;
    }
    if (!stage.isUsable()) {
        log.append(
            "overlay: the X server lacks an extension or a format that the overlay and the switcher need "
            "— neither will be seen");
    }
    const auto warmingUp = scheduler.after(warmUpDelay, [&] {
        const OverlayContentView zone{.content = OverlayZones{{.number = 1, .rect = warmUpFrame}},
                                      .displayFrame = warmUpFrame,
                                      .appearance = {},
                                      .editing = {}};
        overlayPainter.paint(zone, stage.style());
        switcherPainter.paint(
            {.rows = {{.icon = installed.icon("karto"), .appName = "Karto", .title = "Karto"}}},
            stage.style());
    });

    const auto managerChanges = windowManager.observeChanges([&log](bool isAlive) {
        log.append(isAlive
                       ? "window manager: one is running again"
                       : "window manager: none is running any more — no window can be moved until one is");
    });
    connection.attach(descriptors, scheduler, [&endWith] {
        QtApplicationHost::quit(endWith("display: the X server is gone — quitting"));
    });
    return host.run();
}

} // namespace

int main(int argumentCount, char** arguments) {
    std::string successor;
    const int status = run(argumentCount, arguments, successor);
    if (!successor.empty()) {
        ::execv(successor.c_str(), arguments);
        complain("the new version cannot be started");
        return failureStatus;
    }
    return status;
}
