#include "KartoCore/LayoutEditor.h"

#include "KartoCore/LayoutTreeEditing.h"
#include "KartoCore/ModifierSet.h"
#include "KartoCore/TreeOrdering.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace karto {

namespace {

std::vector<std::string> allModifierNames() {
    const std::vector<std::string_view> names = ModifierSet::allModifiers.names();
    return {names.begin(), names.end()};
}

} // namespace

LayoutEditor::LayoutEditor(KartoConfig config)
    : config_(std::move(config))
    , history_(config_) {}

LayoutEditor LayoutEditor::empty(std::string profileName) {
    KartoConfig config;
    config.profileName = std::move(profileName);
    return LayoutEditor(std::move(config));
}

void LayoutEditor::split(const NodePath& path, std::string_view display, Orientation orientation, Axis axis) {
    if (DisplayLayout* edited = layout(display, orientation)) {
        edited->root = LayoutTreeEditing::split(path, axis, edited->root);
    }
    record();
}

void LayoutEditor::removeZone(const NodePath& path, std::string_view display, Orientation orientation) {
    if (DisplayLayout* edited = layout(display, orientation)) {
        edited->root = LayoutTreeEditing::removeZone(path, edited->root).value_or(edited->root);
    }
    record();
}

void LayoutEditor::moveBoundaryLive(const NodePath& path, std::string_view display, Orientation orientation,
                                    double at) {
    if (DisplayLayout* edited = layout(display, orientation)) {
        edited->root = LayoutTreeEditing::moveBoundary(path, at, edited->root);
    }
}

void LayoutEditor::commitBoundaryDrag() { record(); }

void LayoutEditor::applyPreset(const LayoutPreset& preset, std::string_view display,
                               Orientation orientation) {
    if (DisplayLayout* edited = layout(display, orientation)) {
        edited->root = preset.root;
    } else {
        config_.displays.push_back(
            {.name = std::string(display), .orientation = orientation, .root = preset.root});
    }
    record();
}

void LayoutEditor::pinOrder(std::int64_t order, const NodePath& path, std::string_view display,
                            Orientation orientation) {
    if (DisplayLayout* edited = layout(display, orientation)) {
        const int size = TreeOrdering::ringSize(config_.displays);
        const int claim = TreeOrdering::claimedOrder(order, size);
        for (DisplayLayout& each : config_.displays) {
            each.root = TreeOrdering::unpinEveryClaimOn(claim, size, each.root);
        }
        edited->root = TreeOrdering::pin(path, order, edited->root);
    }
    record();
}

void LayoutEditor::clearPin(const NodePath& path, std::string_view display, Orientation orientation) {
    if (DisplayLayout* edited = layout(display, orientation)) {
        edited->root = TreeOrdering::unpin(path, edited->root);
    }
    record();
}

void LayoutEditor::setModifiers(std::vector<std::string> names) {
    if (!config_.hotkeys) {
        config_.hotkeys.emplace();
    }
    config_.hotkeys->modifiers = std::move(names);
    record();
}

void LayoutEditor::setCommandKey(const CommandKey& key, const KartoCommand& command) {
    const auto name = command.configName();
    if (!name) {
        return;
    }
    if (!config_.hotkeys) {
        config_.hotkeys = HotkeysConfig{.modifiers = allModifierNames(), .keys = {}};
    }
    if (!config_.hotkeys->keys) {
        config_.hotkeys->keys.emplace();
    }
    config_.hotkeys->keys->insert_or_assign(std::string(*name), std::string(key.name()));
    record();
}

void LayoutEditor::resetCommandKey(const KartoCommand& command) {
    const auto name = command.configName();
    if (!name || !config_.hotkeys || !config_.hotkeys->keys) {
        return;
    }
    auto& keys = config_.hotkeys->keys;
    if (keys->erase(std::string(*name)) == 0) {
        return;
    }
    if (keys->empty()) {
        keys.reset();
    }
    record();
}

void LayoutEditor::setOverlayAppearance(const OverlayAppearance& appearance) {
    setOverlayAppearanceLive(appearance);
    record();
}

void LayoutEditor::setOverlayAppearanceLive(const OverlayAppearance& appearance) {
    config_.overlay = OverlayConfig{.delay = appearance.delay,
                                    .backgroundOpacity = appearance.backgroundOpacity,
                                    .numberSize = appearance.numberSize,
                                    .color = appearance.color.hex()};
}

void LayoutEditor::commitOverlayAppearanceDrag() { record(); }

void LayoutEditor::resetOverlayAppearance() {
    config_.overlay.reset();
    record();
}

void LayoutEditor::undo() {
    if (auto state = history_.undo()) {
        config_ = *std::move(state);
    }
}

void LayoutEditor::redo() {
    if (auto state = history_.redo()) {
        config_ = *std::move(state);
    }
}

DisplayLayout* LayoutEditor::layout(std::string_view display, Orientation orientation) {
    const auto found = std::ranges::find_if(config_.displays, [&](const DisplayLayout& each) {
        return each.name == display && each.orientation == orientation;
    });
    return found != config_.displays.end() ? &*found : nullptr;
}

} // namespace karto
