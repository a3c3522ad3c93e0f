#include "Karto/Settings/SettingsController.h"

#include "Karto/Adapters/HotkeyService.h"
#include "Karto/Log.h"
#include "Karto/Overlay/OverlayController.h"
#include "Karto/Overlay/ZoneEdit.h"
#include "Karto/Platform/ApplicationActivity.h"
#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/Screens.h"
#include "KartoCore/Overloaded.h"
#include "KartoCore/TreeOrdering.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <variant>

namespace karto {

namespace {

// Edits that follow one another faster than this are written together.
constexpr std::chrono::milliseconds writeDelay{300};

constexpr auto newProfile = "default";

} // namespace

SettingsController::SettingsController(const Services& services, MakeSettingsWindow makeWindow)
    : services_(services)
    , makeWindow_(std::move(makeWindow)) {
    termination_ = services.host.observeTermination(callbacks_.wrap([this] { writeWhatWaits(); }));
    screenChanges_ = services.screens.observeChanges(callbacks_.wrap([this] { refreshDisplays(); }));
}

void SettingsController::show() {
    if (open_) {
        open_->window->bringToFront();
        return;
    }
    auto& config = services_.config;
    config.takeSnapshot();
    const auto current = config.current();
    open_ = std::make_unique<Open>(SettingsModel(
        current ? LayoutEditor(*current) : LayoutEditor::empty(newProfile), services_.keyEvents));
    auto& model = open_->model;
    model.update([&](SettingsModel::Status& status) {
        if (!current && services_.files.exists(config.path())) {
            status.loadError = config.lastError();
            status.isLegacyFormat = config.isLegacyFormat();
        }
        status.displays = services_.displays.displays();
        status.failedCommands = services_.hotkeys.failedRegistrations();
        status.canRevert = config.snapshot() != nullptr;
    });
    const auto& displays = model.status().displays;
    const auto named =
        std::ranges::find_if(displays, [](const DisplayInfo& display) { return !display.name.empty(); });
    model.selectDisplay(named != displays.end() ? std::optional(*named) : std::nullopt);
    model.setCallbacks({.onEdit = callbacks_.wrap([this] { scheduleWrite(); }),
                        .onSelectionChange = callbacks_.wrap([this] { updatePreview(); }),
                        .onSectionChange = callbacks_.wrap([this] { open_->window->closeColorPanel(); })});
    open_->window = makeWindow_(model, {.willClose = callbacks_.wrap([this] { willClose(); }),
                                        .resignedKey = callbacks_.wrap([this] { stopRecording(); }),
                                        .colorPanelClosed = callbacks_.wrap([this] { commitColor(); }),
                                        .revert = callbacks_.wrap([this] { revert(); })});
    open_->activityChanges = services_.activity.observe([this](bool isActive) {
        if (!isActive) {
            stopRecording();
        }
    });
    services_.overlay.beginPreview(
        open_->window->handle(),
        {.onZoneClick = callbacks_.wrap(
             [this](const DisplayInfo& display, std::optional<int> number) { zoneClicked(display, number); }),
         .onEdit = callbacks_.wrap(
             [this](const DisplayInfo& display, const ZoneEdit& edit) { zoneEdited(display, edit); })});
    updatePreview();
}

void SettingsController::willClose() {
    open_->window->closeColorPanel();
    writeWhatWaits();
    stopRecording();
    services_.overlay.endPreview();
    open_.reset();
}

void SettingsController::stopRecording() {
    // A window that is being destroyed loses the keyboard too.
    if (open_) {
        open_->model.shortcutRecorder().stop();
    }
}

void SettingsController::commitColor() {
    if (open_) {
        open_->model.edit([](LayoutEditor& editor) { editor.commitOverlayAppearanceDrag(); });
    }
}

void SettingsController::updatePreview() {
    const auto& model = open_->model;
    services_.overlay.updatePreview(model.editor().config(), model.selectedZoneNumber());
}

void SettingsController::scheduleWrite() {
    pendingWrite_ = services_.scheduler.after(writeDelay, callbacks_.wrap([this] { writeWhatWaits(); }));
    updatePreview();
}

void SettingsController::writeWhatWaits() {
    if (pendingWrite_) {
        pendingWrite_.reset();
        writeNow();
    }
}

void SettingsController::writeNow() {
    // A file that could not be loaded is never overwritten.
    if (!open_ || open_->model.status().loadError) {
        return;
    }
    const auto saved = services_.config.save(open_->model.editor().config());
    std::optional<std::string> saveError;
    if (!saved) {
        const auto& [message, kind] = saved.error();
        const bool isInvalid = kind == SaveError::Kind::invalidConfiguration;
        saveError = "Layout not saved — " + message;
        services_.log.append(
            (isInvalid ? "settings: layout not saved, it is invalid — " : "settings: layout not saved — ") +
            message);
    }
    open_->model.update([&](SettingsModel::Status& status) { status.saveError = saveError; });
}

void SettingsController::revert() {
    pendingWrite_.reset();
    const auto restored = services_.config.restoreSnapshot();
    if (!restored) {
        const auto& message = restored.error().message;
        if (open_) {
            open_->model.update(
                [&](SettingsModel::Status& status) { status.saveError = "Revert failed — " + message; });
        }
        services_.log.append("settings: revert failed — " + message);
        return;
    }
    if (!open_) {
        return;
    }
    open_->model.update([](SettingsModel::Status& status) { status.saveError.reset(); });
    if (const auto snapshot = services_.config.snapshot()) {
        startOver(*snapshot);
    }
}

void SettingsController::startOver(const KartoConfig& config) {
    open_->model.replaceEditor(LayoutEditor(config));
    updatePreview();
}

void SettingsController::configChangedExternally(ConfigChangeEvent event) {
    const auto current = services_.config.current();
    if (event != ConfigChangeEvent::reloadedFromDisk || !open_ || !current) {
        return;
    }
    open_->model.update([&](SettingsModel::Status& status) {
        status.loadError.reset();
        status.isLegacyFormat = false;
        status.saveError.reset();
        status.canRevert = services_.config.snapshot() != nullptr;
    });
    if (*current != open_->model.editor().config()) {
        pendingWrite_.reset();
        startOver(*current);
    }
}

void SettingsController::setFailedCommands(const std::vector<KartoCommand>& commands) {
    if (open_) {
        open_->model.update([&](SettingsModel::Status& status) { status.failedCommands = commands; });
    }
}

void SettingsController::zoneClicked(const DisplayInfo& display, std::optional<int> zoneNumber) {
    if (!open_) {
        return;
    }
    if (zoneNumber) {
        auto& model = open_->model;
        const bool isOtherDisplay = model.selectedDisplay() != display;
        model.selectDisplay(display);
        model.selectZone(TreeOrdering::path(*zoneNumber, display.name, display.orientation(),
                                            model.editor().config().displays));
        // Zones of two displays may have one path.
        if (isOtherDisplay) {
            updatePreview();
        }
        model.show(SettingsSection::layout);
    }
    open_->window->bringToFront();
}

void SettingsController::zoneEdited(const DisplayInfo& display, const ZoneEdit& edit) {
    if (!open_) {
        return;
    }
    const auto& name = display.name;
    const auto orientation = display.orientation();
    open_->model.edit([&](LayoutEditor& editor) {
        std::visit(
            Overloaded{
                [&](const ZoneEdits::Split& split) {
                    editor.split(split.path, name, orientation, split.axis);
                },
                [&](const ZoneEdits::Remove& remove) { editor.removeZone(remove.path, name, orientation); },
                [&](const ZoneEdits::DragBoundary& drag) {
                    editor.moveBoundaryLive(drag.path, name, orientation, drag.to);
                },
                [&](const ZoneEdits::CommitBoundary&) { editor.commitBoundaryDrag(); },
            },
            edit);
    });
}

void SettingsController::refreshDisplays() {
    if (open_) {
        open_->model.update(
            [&](SettingsModel::Status& status) { status.displays = services_.displays.displays(); });
        updatePreview();
    }
}

} // namespace karto
