#include "Karto/Startup.h"

#include "Karto/Adapters/ConfigStore.h"
#include "Karto/Coordinator.h"
#include "Karto/Overlay/OverlayController.h"
#include "Karto/StatusReports.h"
#include "Karto/Switcher/SwitcherController.h"

#include <string>

namespace karto {

bool isTrustedOrExplains(WindowService& windows, ApplicationHost& host, CheckLog& log) {
    if (windows.requestTrust()) {
        return true;
    }
    log.append("startup: Accessibility permission not granted, showing the onboarding alert and quitting");
    Alert alert{.message = "Karto needs permission to control windows",
                .informativeText =
                    "Open System Settings → Privacy & Security → Accessibility and switch Karto on.\n\n"
                    "If Karto is not in that list, click the \"+\" button below it and choose Karto in your "
                    "Applications folder.\n\n"
                    "Karto quits now — it does not pick the permission up while running. Start it again once "
                    "you have granted it.",
                .buttons = {"Open Settings", "Quit"}};
    if (const auto problem = windows.trustProblem()) {
        log.append("startup: " + *problem);
        alert.informativeText += "\n\n" + *problem;
    }
    if (host.runAlert(alert) == 0) {
        windows.openAccessibilitySettings();
    }
    return false;
}

Startup::Startup(const Services& services)
    : services_(services) {}

void Startup::run() {
    ConfigStore& store = services_.store;
    store.reload();
    services_.hotkeys.registerHotkeys(
        store.hotkeyModifiers(), store.commandKeys(),
        callbacks_.wrap([this](const KartoCommand& command) { dispatch(command); }));
    keyboardChanges_ =
        services_.hotKeyCenter.observeKeyboardChanges(callbacks_.wrap([this] { keyboardChanged(); }));
    reportHotkeys("hotkey registration");
    store.start(callbacks_.wrap([this](ConfigChangeEvent) { configChanged(); }));
    reportConfig("startup");
    services_.overlay.start(services_.overlayModifiers);
    services_.switcher.start(services_.switcherModifiers);
    services_.host.print(bannerText(store.hotkeyModifiers(), store.commandKeys()));
}

void Startup::dispatch(const KartoCommand& command) {
    switch (command.kind()) {
    case KartoCommand::Kind::cycleWindows: services_.switcher.advance(); break;
    case KartoCommand::Kind::cancelCycling: services_.switcher.cancel(); break;
    default: services_.coordinator.handle(command); break;
    }
}

void Startup::configChanged() {
    reportConfig("config reload");
    rebindHotkeys();
    reportHotkeys("hotkey registration (reload)");
}

void Startup::keyboardChanged() {
    services_.hotkeys.release();
    rebindHotkeys();
    reportHotkeys("hotkey registration (keyboard change)");
}

void Startup::rebindHotkeys() {
    services_.hotkeys.rebind(services_.store.hotkeyModifiers(), services_.store.commandKeys());
}

void Startup::reportConfig(std::string_view context) {
    logConfigStatus(context, services_.store, services_.displays, services_.store.renamedHotkeyNames(),
                    services_.log);
}

void Startup::reportHotkeys(std::string_view context) {
    logHotkeyRegistration(context, services_.hotkeys, services_.store, services_.log);
}

} // namespace karto
