#include "Karto/Settings/ShortcutSettings.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>
#include <variant>

namespace karto {

namespace {

constexpr int fewestModifiers = 2;
constexpr auto listening = "Listening…";
constexpr auto cancel = "Cancel";
constexpr auto taken = "Another app is using this combination.";

} // namespace

ShortcutSettings::ShortcutSettings(SettingsModel& model, std::function<void()> onChange)
    : model_(model)
    , onChange_(std::move(onChange)) {}

ShortcutSettings::~ShortcutSettings() {
    onChange_ = [] {};
    model_.shortcutRecorder().stop();
}

ShortcutSettings::HyperKey ShortcutSettings::hyperKey() const {
    const auto combination = model_.editor().config().modifierSet().value_or(ModifierSet::allModifiers);
    return {.explanation =
                isUnavailable()
                    ? "The combination cannot be changed while the config file cannot be read — see Layout "
                      "for the error."
                    : "This combination summons the overlay and is held for every command below.",
            .isUnavailable = isUnavailable(),
            .value = isRecordingModifiers_ ? listening : combination.glyphs(),
            .spoken =
                isRecordingModifiers_ ? listening : fmt::format("{}", fmt::join(combination.names(), ", ")),
            .isRecording = isRecordingModifiers_,
            .button = isRecordingModifiers_ ? cancel : "Record New Combination",
            .refusal = modifierRefusal_};
}

std::vector<ShortcutSettings::CommandRow> ShortcutSettings::commandRows() const {
    std::vector<CommandRow> rows;
    const auto keys = this->keys();
    for (const KartoCommand& command : KartoCommand::configurable) {
        const bool isRecording = recordingCommand_ == command;
        const auto refusal = refusals_.find(command);
        rows.push_back(
            {.command = command,
             .name = command.displayName(),
             .value = isRecording ? listening : "hyper + " + keys.at(command).glyph(),
             .spoken = isRecording ? listening : fmt::format("hyper + {}", keys.at(command).name()),
             .isRecording = isRecording,
             .button = isRecording ? cancel : "Record",
             .canRecord = !isUnavailable(),
             .canReset = !isUnavailable() && model_.editor().config().hasCommandKeyOverride(command),
             .refusal = refusal != refusals_.end() ? std::optional(refusal->second) : std::nullopt,
             .conflict = isTaken(command) ? std::optional<std::string>(taken) : std::nullopt});
    }
    return rows;
}

std::optional<std::string> ShortcutSettings::digitsConflict() const {
    std::vector<int> zones;
    for (const KartoCommand& command : model_.status().failedCommands) {
        if (command.kind() == KartoCommand::Kind::moveToZone) {
            zones.push_back(command.zone());
        }
    }
    if (zones.empty()) {
        return std::nullopt;
    }
    std::ranges::sort(zones);
    return fmt::format("{} — {}", fmt::join(zones, ", "), taken);
}

void ShortcutSettings::toggleHyperKey() {
    if (isRecordingModifiers_) {
        model_.shortcutRecorder().stop();
    } else {
        recordHyperKey();
    }
}

void ShortcutSettings::toggle(const KartoCommand& command) {
    if (recordingCommand_ == command) {
        model_.shortcutRecorder().stop();
    } else {
        record(command);
    }
}

void ShortcutSettings::reset(const KartoCommand& command) {
    const auto& defaults = CommandKey::defaults();
    const auto key = defaults.find(command);
    if (key == defaults.end()) {
        return;
    }
    if (auto refusal = holderRefusal(key->second, command)) {
        refuse(command, *std::move(refusal));
        return;
    }
    refusals_.erase(command);
    model_.edit([&](LayoutEditor& editor) { editor.resetCommandKey(command); });
    onChange_();
}

void ShortcutSettings::recordHyperKey() {
    auto& recorder = model_.shortcutRecorder();
    recorder.stop();
    modifierRefusal_.reset();
    isRecordingModifiers_ = true;
    recorder.start(callbacks_.wrap([this](ModifierSet combination) { commit(combination); }),
                   callbacks_.wrap([this] {
                       isRecordingModifiers_ = false;
                       onChange_();
                   }));
    onChange_();
}

void ShortcutSettings::record(const KartoCommand& command) {
    auto& recorder = model_.shortcutRecorder();
    recorder.stop();
    refusals_.erase(command);
    recordingCommand_ = command;
    recorder.startKey(callbacks_.wrap([this, command](const ShortcutRecorder::RecordedKey& recorded) {
        commit(recorded, command);
    }),
                      callbacks_.wrap([this] {
                          recordingCommand_.reset();
                          onChange_();
                      }));
    onChange_();
}

void ShortcutSettings::commit(ModifierSet combination) {
    if (combination.count() < fewestModifiers) {
        modifierRefusal_ =
            "Hold at least two modifiers — one on its own takes ordinary keys away from every app.";
        return;
    }
    modifierRefusal_.reset();
    const auto names = combination.names();
    model_.edit([&](LayoutEditor& editor) { editor.setModifiers({names.begin(), names.end()}); });
}

void ShortcutSettings::commit(const ShortcutRecorder::RecordedKey& recorded, const KartoCommand& command) {
    using OtherKey = ShortcutRecorder::OtherKey;
    if (const auto* other = std::get_if<OtherKey>(&recorded)) {
        refuse(command, *other == OtherKey::digit
                            ? "Digits 1-9 move a window to the zone with that number."
                            : "Letters, arrows, space, return and tab can be command keys.");
        return;
    }
    const auto& key = std::get<CommandKey>(recorded);
    if (auto refusal = holderRefusal(key, command)) {
        refuse(command, *std::move(refusal));
        return;
    }
    model_.edit([&](LayoutEditor& editor) { editor.setCommandKey(key, command); });
}

void ShortcutSettings::refuse(const KartoCommand& command, std::string message) {
    refusals_.insert_or_assign(command, std::move(message));
    onChange_();
}

std::optional<std::string> ShortcutSettings::holderRefusal(const CommandKey& key,
                                                           const KartoCommand& command) const {
    return CommandKey::holder(key, keys(), command).transform([](const KartoCommand& holder) {
        return "Already used by " + holder.displayName() + ".";
    });
}

CommandKeyMap ShortcutSettings::keys() const {
    return model_.editor().config().commandKeys().value_or(CommandKey::defaults());
}

bool ShortcutSettings::isTaken(const KartoCommand& command) const {
    return std::ranges::find(model_.status().failedCommands, command) != model_.status().failedCommands.end();
}

} // namespace karto
