#include "Karto/Settings/LayoutSettings.h"

#include "KartoCore/LayoutCheck.h"

#include <algorithm>

namespace karto::LayoutSettings {

Content content(const SettingsModel::Status& status) {
    if (status.isLegacyFormat) {
        return Content::legacyFormat;
    }
    return status.loadError ? Content::unreadableFile : Content::editor;
}

void apply(const LayoutPreset& preset, SettingsModel& model) {
    if (const auto display = model.selectedDisplay()) {
        model.edit(
            [&](LayoutEditor& editor) { editor.applyPreset(preset, display->name, display->orientation()); });
        model.selectZone(std::nullopt);
    }
}

void startOver(const LayoutPreset& preset, SettingsModel& model) {
    for (const DisplayInfo& display : model.status().displays) {
        const auto& presets = LayoutPresets::all(display.orientation());
        const auto same = std::ranges::find(presets, preset.id, &LayoutPreset::id);
        if (same != presets.end()) {
            model.edit([&](LayoutEditor& editor) {
                editor.applyPreset(*same, display.name, display.orientation());
            });
        }
    }
    model.update([](SettingsModel::Status& status) {
        status.loadError.reset();
        status.isLegacyFormat = false;
    });
}

std::vector<std::string> warnings(const SettingsModel& model) {
    std::vector<std::string> sentences;
    for (const auto& warning : LayoutCheck::warnings(model.editor().config(), model.status().displays)) {
        sentences.push_back(message(warning));
    }
    return sentences;
}

} // namespace karto::LayoutSettings
