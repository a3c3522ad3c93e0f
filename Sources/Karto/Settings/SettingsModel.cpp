#include "Karto/Settings/SettingsModel.h"

#include "KartoCore/TreeOrdering.h"

namespace karto {

namespace {

void call(const std::function<void()>& callback) {
    // The callback may put another one in its place.
    if (const auto current = callback) {
        current();
    }
}

} // namespace

std::string_view title(SettingsSection section) {
    switch (section) {
    case SettingsSection::general: return "General";
    case SettingsSection::shortcuts: return "Shortcuts";
    case SettingsSection::overlay: return "Overlay";
    case SettingsSection::layout: return "Layout";
    }
    std::unreachable();
}

SettingsModel::SettingsModel(LayoutEditor editor, KeyEvents& keyEvents)
    : editor_(std::move(editor))
    , recorder_(keyEvents) {}

void SettingsModel::setEditor(LayoutEditor editor) {
    const bool isChange = editor != editor_;
    editor_ = std::move(editor);
    if (isChange) {
        call(callbacks_.onEdit);
    }
    observers_.notify();
}

void SettingsModel::replaceEditor(LayoutEditor editor) {
    editor_ = std::move(editor);
    observers_.notify();
}

void SettingsModel::selectDisplay(std::optional<DisplayInfo> display) {
    if (display != selectedDisplay_) {
        selectedDisplay_ = std::move(display);
        observers_.notify();
    }
}

void SettingsModel::selectZone(std::optional<NodePath> path) {
    if (path != selectedZonePath_) {
        selectedZonePath_ = std::move(path);
        call(callbacks_.onSelectionChange);
        observers_.notify();
    }
}

void SettingsModel::show(SettingsSection section) {
    if (section != section_) {
        section_ = section;
        call(callbacks_.onSectionChange);
        observers_.notify();
    }
}

std::optional<int> SettingsModel::selectedZoneNumber() const {
    if (!selectedZonePath_ || !selectedDisplay_) {
        return std::nullopt;
    }
    return TreeOrdering::order(*selectedZonePath_, selectedDisplay_->name, selectedDisplay_->orientation(),
                               editor_.config().displays);
}

} // namespace karto
