#include "Karto/Overlay/OverlayController.h"

#include "Karto/Adapters/DisplayRegistry.h"
#include "KartoCore/ZoneResolver.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ranges>
#include <span>
#include <tuple>
#include <utility>
#include <variant>

namespace karto {

namespace {

// Before the delay ends; a shortcut pressed quickly is through by then.
constexpr std::chrono::milliseconds preparationTime{100};

std::chrono::milliseconds delayOf(const OverlayAppearance& appearance) {
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(appearance.delay));
}

OverlayAppearance appearanceOf(const KartoConfig* config) {
    return config != nullptr ? config->overlayAppearance().value_or(OverlayAppearance{})
                             : OverlayAppearance{};
}

std::vector<OverlayScreen> screensOf(const KartoConfig* config, std::span<const DisplayInfo> displays,
                                     const std::optional<std::string>& configError) {
    if (config == nullptr) {
        return OverlayLayout::build({}, displays, 0, configError);
    }
    const auto ring = ZoneResolver::resolve(*config, displays);
    return OverlayLayout::build(ring, displays, static_cast<int>(config->zones().size()), configError);
}

void select(int order, std::vector<OverlayScreen>& screens) {
    for (OverlayScreen& screen : screens) {
        if (auto* const zones = std::get_if<OverlayZones>(&screen.content)) {
            for (OverlayZone& zone : *zones) {
                zone.isSelected = zone.isSelected || zone.number == order;
            }
        }
    }
}

std::string unmatchedSentence(const DisplayInfo& display, std::span<const DisplayInfo> systemScreens) {
    return fmt::format(
        "no NSScreen matched display \"{}\" — NSScreen.screens reports [{}], nothing drawn on this display",
        display.name, fmt::join(systemScreens | std::views::transform(&DisplayInfo::name), ", "));
}

} // namespace

OverlayController::OverlayController(const Services& services, PaintOverlay paint)
    : services_(services)
    , paint_(std::move(paint)) {}

void OverlayController::start(ModifierWatching& modifiers) {
    modifiers_ = &modifiers;
    modifiers.start(callbacks_.wrap([this](ModifierSet held) { modifiersChanged(held); }));
    screenChanges_ = services_.screens.observeChanges(callbacks_.wrap([this] { screensChanged(); }));
    activityChanges_ =
        services_.activity.observe(callbacks_.wrap([this](bool isActive) { activityChanged(isActive); }));
    styleChanges_ = services_.stage.observeStyleChanges(callbacks_.wrap([this] { repaint(); }));
}

void OverlayController::modifiersChanged(ModifierSet held) {
    if (preview_) {
        return;
    }
    lastHeld_ = held;
    decide(false);
}

OverlayDecision OverlayController::decision(bool delayElapsed) const {
    return OverlayGate::decide(lastHeld_, services_.config.hotkeyModifiers(),
                               {.isShowing = isShowing_, .delayElapsed = delayElapsed});
}

void OverlayController::decide(bool delayElapsed) {
    using enum OverlayDecision;
    switch (decision(delayElapsed)) {
    case show: this->show(); break;
    case hide: this->hide(); break;
    case armDelay: this->armDelay(); break;
    case doNothing: break;
    }
}

void OverlayController::armDelay() {
    appearance_ = appearanceOf(services_.config.current().get());
    const auto delay = delayOf(appearance_);
    pendingShow_ = services_.scheduler.after(delay, callbacks_.wrap([this] {
        if (!preview_) {
            decide(true);
        }
    }));
    pendingPreparation_.reset();
    if (delay > preparationTime) {
        pendingPreparation_ =
            services_.scheduler.after(delay - preparationTime, callbacks_.wrap([this] { prepare(); }));
    }
}

void OverlayController::prepare() {
    if (decision(true) != OverlayDecision::show) {
        return;
    }
    // Reported when the overlay is shown.
    std::ignore = rebuildWindows(currentScreens());
    for (const auto& window : overlayWindows_) {
        window->prepare();
    }
    services_.stage.present();
}

void OverlayController::show() {
    if (isShowing_) {
        return;
    }
    report(rebuildWindows(currentScreens()));
    for (const auto& window : overlayWindows_) {
        window->orderFront();
    }
    isShowing_ = true;
    services_.stage.present();
}

void OverlayController::hide() {
    pendingShow_.reset();
    pendingPreparation_.reset();
    for (const auto& window : overlayWindows_) {
        window->orderOut();
    }
    orderedBelow_.reset();
    isShowing_ = false;
    services_.stage.present();
}

void OverlayController::beginPreview(WindowHandle previewWindow, PreviewHandlers handlers) {
    preview_ = Preview{.window = previewWindow, .handlers = std::move(handlers), .layouts = {}};
    pendingShow_.reset();
    pendingPreparation_.reset();
}

void OverlayController::updatePreview(const KartoConfig& config, std::optional<int> selectedZoneOrder) {
    const auto displays = services_.displays.displays();
    if (displays != windowDisplays_) {
        endGestures();
    }
    if (!preview_) {
        return;
    }
    appearance_ = appearanceOf(&config);
    preview_->layouts = config.displays;
    auto screens = screensOf(&config, displays, std::nullopt);
    if (selectedZoneOrder) {
        select(*selectedZoneOrder, screens);
    }
    report(rebuildWindows(std::move(screens)));
    if (orderedBelow_ != preview_->window) {
        for (const auto& window : overlayWindows_) {
            window->orderBelow(preview_->window);
        }
        orderedBelow_ = preview_->window;
    }
    isShowing_ = true;
    services_.stage.present();
}

void OverlayController::endPreview() {
    endGestures();
    preview_.reset();
    hide();
    if (modifiers_ != nullptr) {
        modifiersChanged(modifiers_->held());
    }
}

void OverlayController::screensChanged() {
    if (!preview_) {
        hide();
    }
}

void OverlayController::activityChanged(bool isActive) {
    for (const auto& window : overlayWindows_) {
        window->setAppActive(isActive);
    }
    if (isShowing_) {
        services_.stage.present();
    }
}

void OverlayController::repaint() {
    // A hidden overlay is painted anew when it is shown.
    if (isShowing_) {
        fill();
        services_.stage.present();
    }
}

std::vector<OverlayScreen> OverlayController::currentScreens() {
    const auto& config = services_.config;
    return screensOf(config.current().get(), services_.displays.displays(), config.lastError());
}

std::vector<std::string> OverlayController::rebuildWindows(std::vector<OverlayScreen> screens) {
    screens_ = std::move(screens);
    std::vector<std::string> unmatched;
    if (!std::ranges::equal(screens_, windowDisplays_, {}, &OverlayScreen::display)) {
        unmatched = createWindows();
    }
    fill();
    return unmatched;
}

std::vector<std::string> OverlayController::createWindows() {
    overlayWindows_.clear();
    windowDisplays_.clear();
    orderedBelow_.reset();
    const auto systemScreens = readDisplays(services_.screens);
    std::vector<bool> isTaken(systemScreens.size());
    std::vector<OverlayScreen> matched;
    std::vector<std::string> unmatched;
    for (OverlayScreen& screen : screens_) {
        // Displays that share a name take different screens, in the system's order.
        const auto indices = std::views::iota(std::size_t{0}, systemScreens.size());
        const auto index = std::ranges::find_if(indices, [&](std::size_t each) {
            return !isTaken[each] && systemScreens[each].name == screen.display.name;
        });
        if (index == indices.end()) {
            unmatched.push_back(unmatchedSentence(screen.display, systemScreens));
            continue;
        }
        isTaken[*index] = true;
        overlayWindows_.push_back(std::make_unique<OverlayWindow>(services_.stage, services_.scheduler,
                                                                  paint_, systemScreens[*index].frame,
                                                                  services_.activity.isActive()));
        windowDisplays_.push_back(screen.display);
        matched.push_back(std::move(screen));
    }
    screens_ = std::move(matched);
    return unmatched;
}

void OverlayController::fill() {
    for (std::size_t index = 0; index < overlayWindows_.size(); ++index) {
        OverlayWindow& window = *overlayWindows_[index];
        const auto& [display, content] = screens_[index];
        window.setPreview(preview_.has_value());
        window.setZoneTapHandler([this, display](std::optional<int> number) {
            if (preview_) {
                // The handler may end the preview.
                const auto onZoneClick = preview_->handlers.onZoneClick;
                if (onZoneClick) {
                    onZoneClick(display, number);
                }
            }
        });
        window.setView(
            {.content = content, .displayFrame = display.frame, .appearance = appearance_, .editing = {}},
            editing(display));
    }
}

std::optional<ZoneEditingModel> OverlayController::editing(const DisplayInfo& display) const {
    if (!preview_) {
        return std::nullopt;
    }
    const auto layout = std::ranges::find_if(preview_->layouts, [&](const DisplayLayout& each) {
        return each.name == display.name && each.orientation == display.orientation();
    });
    if (layout == preview_->layouts.end()) {
        return std::nullopt;
    }
    auto perform = [this, display](const ZoneEdit& edit) {
        // The handler may end the preview.
        const auto onEdit = preview_ ? preview_->handlers.onEdit : nullptr;
        if (onEdit) {
            onEdit(display, edit);
        }
    };
    return ZoneEditingModel{.root = layout->root, .perform = callbacks_.wrap(std::move(perform))};
}

void OverlayController::endGestures() {
    // Whoever is asked may make other windows.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t index = 0; index < overlayWindows_.size(); ++index) {
        overlayWindows_[index]->endGesture();
    }
}

void OverlayController::report(const std::vector<std::string>& sentences) {
    for (const std::string& sentence : sentences) {
        services_.log.append("overlay: " + sentence);
    }
}

} // namespace karto
