#pragma once
// The section of the settings in which shortcuts are recorded: its rows and texts, and what recording does.
// Refusals live as long as this object, that is while the section is shown.

#include "Karto/Platform/Observers.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Settings/SettingsModel.h"
#include "KartoCore/Config.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace karto {

class ShortcutSettings {
public:
    struct HyperKey {
        std::string explanation;
        // The explanation is a warning.
        bool isUnavailable = false;
        // The combination as glyphs, or that it is being recorded.
        std::string value;
        // The same for somebody who listens.
        std::string spoken;
        bool isRecording = false;
        std::string button;
        std::optional<std::string> refusal;
    };

    struct CommandRow {
        KartoCommand command;
        std::string name;
        // The shortcut as glyphs, or that it is being recorded.
        std::string value;
        // The same for somebody who listens.
        std::string spoken;
        bool isRecording = false;
        std::string button;
        bool canRecord = false;
        bool canReset = false;
        std::optional<std::string> refusal;
        // Present when another application holds the shortcut.
        std::optional<std::string> conflict;
    };

    // onChange: called when what this object says has changed without a change of the model.
    ShortcutSettings(SettingsModel& model, std::function<void()> onChange);
    ~ShortcutSettings();
    ShortcutSettings(ShortcutSettings&&) = delete;
    ShortcutSettings& operator=(ShortcutSettings&&) = delete;
    ShortcutSettings(const ShortcutSettings&) = delete;
    ShortcutSettings& operator=(const ShortcutSettings&) = delete;

    [[nodiscard]] HyperKey hyperKey() const;
    // One row for each configurable command, in the order of listing.
    [[nodiscard]] std::vector<CommandRow> commandRows() const;
    // Present when other applications hold shortcuts of zones.
    [[nodiscard]] std::optional<std::string> digitsConflict() const;

    // Begins to record, or cancels the recording of the same thing.
    void toggleHyperKey();
    void toggle(const KartoCommand& command);
    // Back to the default key.
    void reset(const KartoCommand& command);

private:
    void recordHyperKey();
    void record(const KartoCommand& command);
    void commit(ModifierSet combination);
    void commit(const ShortcutRecorder::RecordedKey& recorded, const KartoCommand& command);
    void refuse(const KartoCommand& command, std::string message);
    // What stands against the key for the command: the command that has it.
    [[nodiscard]] std::optional<std::string> holderRefusal(const CommandKey& key,
                                                           const KartoCommand& command) const;
    [[nodiscard]] CommandKeyMap keys() const;
    [[nodiscard]] bool isTaken(const KartoCommand& command) const;

    [[nodiscard]] bool isUnavailable() const { return model_.status().loadError.has_value(); }

    SettingsModel& model_;
    std::function<void()> onChange_;
    bool isRecordingModifiers_ = false;
    std::optional<KartoCommand> recordingCommand_;
    std::map<KartoCommand, std::string> refusals_;
    std::optional<std::string> modifierRefusal_;
    WeakCallbacks callbacks_;
};

} // namespace karto
