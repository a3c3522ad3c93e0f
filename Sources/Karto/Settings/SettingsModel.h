#pragma once
// What the settings window shows: the configuration being edited with its history, what is selected, and what
// went wrong. Views read it, edit through it and are told after every change.

#include "Karto/Platform/Observers.h"
#include "Karto/Settings/ShortcutRecorder.h"
#include "KartoCore/DisplayInfo.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/LayoutEditor.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace karto {

enum class SettingsSection : std::uint8_t { general, shortcuts, overlay, layout };

// In the order of listing.
inline constexpr std::array settingsSections{SettingsSection::general, SettingsSection::shortcuts,
                                             SettingsSection::overlay, SettingsSection::layout};

// What a person reads.
std::string_view title(SettingsSection section);

class SettingsModel {
public:
    // Fields that nothing follows from; notifyChanged() makes the views read them.
    struct Status {
        std::vector<DisplayInfo> displays;
        // Why the file could not be loaded; nothing is written while it is there.
        std::optional<std::string> loadError;
        // The file is in the old format, which is no longer read.
        bool isLegacyFormat = false;
        bool canRevert = false;
        // Why the last write failed.
        std::optional<std::string> saveError;
        std::vector<KartoCommand> failedCommands;

        bool operator==(const Status&) const = default;
    };

    struct Callbacks {
        std::function<void()> onEdit;
        std::function<void()> onSelectionChange;
        std::function<void()> onSectionChange;
    };

    SettingsModel(LayoutEditor editor, KeyEvents& keyEvents);

    void setCallbacks(Callbacks callbacks) { callbacks_ = std::move(callbacks); }

    [[nodiscard]] const LayoutEditor& editor() const { return editor_; }

    // Applies an operation of the editor.
    template<typename Operation>
    void edit(Operation operation) {
        LayoutEditor edited = editor_;
        operation(edited);
        setEditor(std::move(edited));
    }

    // onEdit is called when the configuration differs from the one before.
    void setEditor(LayoutEditor editor);
    // The same without onEdit: for what does not come from the person.
    void replaceEditor(LayoutEditor editor);

    [[nodiscard]] const Status& status() const { return status_; }

    template<typename Change>
    void update(Change change) {
        Status changed = status_;
        change(changed);
        if (changed != status_) {
            status_ = std::move(changed);
            observers_.notify();
        }
    }

    // The display whose layout is shown; absent when none is selected.
    [[nodiscard]] const std::optional<DisplayInfo>& selectedDisplay() const { return selectedDisplay_; }

    void selectDisplay(std::optional<DisplayInfo> display);

    [[nodiscard]] const std::optional<NodePath>& selectedZonePath() const { return selectedZonePath_; }

    void selectZone(std::optional<NodePath> path);

    [[nodiscard]] SettingsSection section() const { return section_; }

    void show(SettingsSection section);

    [[nodiscard]] ShortcutRecorder& shortcutRecorder() { return recorder_; }

    // Ring number of the selected zone; absent when none is selected or it is gone.
    [[nodiscard]] std::optional<int> selectedZoneNumber() const;

    [[nodiscard]] Registration observe(std::function<void()> onChange) {
        return observers_.add(std::move(onChange));
    }

private:
    LayoutEditor editor_;
    Status status_;
    std::optional<DisplayInfo> selectedDisplay_;
    std::optional<NodePath> selectedZonePath_;
    SettingsSection section_ = SettingsSection::general;
    ShortcutRecorder recorder_;
    Callbacks callbacks_;
    Observers<> observers_;
};

} // namespace karto
