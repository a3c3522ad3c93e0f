#include "Karto/Agent.h"

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/Instance.h"
#include "Karto/StatusReports.h"
#include "Karto/TrustAlert.h"

#include <fmt/format.h>

#include <string>
#include <utility>

namespace karto {

Agent::Agent(const Platform& platform, Faces faces, CheckLog& log, std::string_view homeDirectory)
    : host_(platform.host)
    , files_(platform.files)
    , hotKeyCenter_(platform.hotKeyCenter)
    , instance_(platform.instance)
    , log_(log)
    , store_(fmt::format("{}/{}", homeDirectory, ConfigStore::relativePath), platform.files,
             platform.fileWatch, platform.scheduler, log)
    , displays_(platform.screens)
    , updater_(platform.updater)
    , windows_(platform.accessibility)
    , coordinator_(windows_, displays_, store_, log)
    , switcherWindow_(platform.stage, std::move(faces.switcher))
    , switcher_(windows_, displays_, store_, switcherWindow_, log)
    , hotkeys_(platform.hotKeyCenter)
    , overlay_({.config = store_,
                .displays = displays_,
                .screens = platform.screens,
                .stage = platform.stage,
                .activity = platform.activity,
                .scheduler = platform.scheduler,
                .log = log},
               std::move(faces.overlay))
    , settings_(
          {.config = store_,
           .displays = displays_,
           .overlay = overlay_,
           .hotkeys = hotkeys_,
           .host = platform.host,
           .activity = platform.activity,
           .screens = platform.screens,
           .scheduler = platform.scheduler,
           .files = platform.files,
           .keyEvents = platform.keyEvents,
           .log = log},
          [this, make = std::move(faces.settings)](SettingsModel& model, SettingsWindow::Events events) {
              return make(model, std::move(events),
                          {.loginItem = loginItem_, .updater = updater_, .windows = windows_, .log = log_});
          })
    , loginItem_(platform.loginItem)
    , menuBar_({.config = store_,
                .displays = displays_,
                .hotkeys = hotkeys_,
                .loginItem = loginItem_,
                .updater = updater_,
                .host = platform.host,
                .item = platform.statusItem,
                .log = log},
               [this] { settings_.show(); })
    , overlayModifiers_(platform.modifierEvents, platform.scheduler)
    , switcherModifiers_(platform.modifierEvents, platform.scheduler) {}

bool Agent::start() {
    if (!isTrustedOrExplains()) {
        return false;
    }
    updater_.engine().start();
    store_.reload();
    hotkeys_.registerHotkeys(store_.hotkeyModifiers(), store_.commandKeys(),
                             callbacks_.wrap([this](const KartoCommand& command) { dispatch(command); }));
    keyboardChanges_ = hotKeyCenter_.observeKeyboardChanges(callbacks_.wrap([this] { keyboardChanged(); }));
    reportHotkeys("hotkey registration");
    updater_.onPendingVersionChange = callbacks_.wrap([this] { menuBar_.refresh(); });
    store_.start(callbacks_.wrap([this](ConfigChangeEvent event) { configChanged(event); }));
    reportConfig("startup");
    menuBar_.install();
    furtherStarts_ = instance_.observeFurtherStarts(callbacks_.wrap([this] { settings_.show(); }));
    if (!files_.exists(store_.path())) {
        settings_.show();
    }
    overlay_.start(overlayModifiers_);
    switcher_.start(switcherModifiers_);
    host_.print(bannerText(store_.hotkeyModifiers(), store_.commandKeys()));
    return true;
}

bool Agent::isTrustedOrExplains() {
    if (windows_.requestTrust()) {
        return true;
    }
    instance_.giveWay();
    explainDistrust(windows_.trustProblem(), host_, [this] { windows_.openAccessibilitySettings(); }, log_);
    return false;
}

void Agent::dispatch(const KartoCommand& command) {
    switch (command.kind()) {
    case KartoCommand::Kind::cycleWindows: switcher_.advance(); break;
    case KartoCommand::Kind::cancelCycling: switcher_.cancel(); break;
    default: coordinator_.handle(command); break;
    }
}

void Agent::configChanged(ConfigChangeEvent event) {
    reportConfig("config reload");
    rebindHotkeys();
    reportHotkeys("hotkey registration (reload)");
    settings_.setFailedCommands(hotkeys_.failedRegistrations());
    settings_.configChangedExternally(event);
    menuBar_.refresh();
}

void Agent::keyboardChanged() {
    hotkeys_.release();
    rebindHotkeys();
    reportHotkeys("hotkey registration (keyboard change)");
    settings_.setFailedCommands(hotkeys_.failedRegistrations());
    menuBar_.refresh();
}

void Agent::rebindHotkeys() { hotkeys_.rebind(store_.hotkeyModifiers(), store_.commandKeys()); }

void Agent::reportConfig(std::string_view context) {
    logConfigStatus(context, store_, displays_, store_.renamedHotkeyNames(), log_);
}

void Agent::reportHotkeys(std::string_view context) {
    logHotkeyRegistration(context, hotkeys_, store_, log_);
}

} // namespace karto
