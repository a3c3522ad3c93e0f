#include "Karto/Settings/ShortcutRecorder.h"

#include "Karto/Adapters/KeyCodes.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace karto {

namespace {

ShortcutRecorder::RecordedKey recorded(std::optional<std::uint32_t> keyCode) {
    using OtherKey = ShortcutRecorder::OtherKey;
    if (!keyCode) {
        return OtherKey::unsupported;
    }
    for (const std::string_view name : CommandKey::vocabulary) {
        const auto key = CommandKey::named(name);
        if (key && carbonKeyCode(*key) == keyCode) {
            return *key;
        }
    }
    const auto digit = std::ranges::find(ZoneDigits::codes, *keyCode, &ZoneDigits::DigitKey::keyCode);
    return digit != ZoneDigits::codes.end() ? OtherKey::digit : OtherKey::unsupported;
}

} // namespace

ShortcutRecorder::ShortcutRecorder(KeyEvents& events)
    : events_(events) {}

void ShortcutRecorder::start(std::function<void(ModifierSet)> onCommit, std::function<void()> onEnd) {
    begin(std::move(onEnd), [this, onCommit = std::move(onCommit)](const KeyEvent& event) {
        return recordModifiers(event, onCommit);
    });
}

void ShortcutRecorder::startKey(std::function<void(const RecordedKey&)> onCommit,
                                std::function<void()> onEnd) {
    begin(std::move(onEnd), [this, onCommit = std::move(onCommit)](const KeyEvent& event) {
        return recordKey(event, onCommit);
    });
}

void ShortcutRecorder::stop() {
    if (const auto onEnd = finish()) {
        onEnd();
    }
}

void ShortcutRecorder::begin(std::function<void()> onEnd,
                             std::function<KeyEventAnswer(const KeyEvent&)> onEvent) {
    if (isRecording_) {
        return;
    }
    isRecording_ = true;
    heldMax_ = {};
    onEnd_ = onEnd ? std::move(onEnd) : [] {};
    monitor_ = events_.observe(std::move(onEvent));
}

std::function<void()> ShortcutRecorder::finish() {
    isRecording_ = false;
    heldMax_ = {};
    monitor_ = {};
    return std::exchange(onEnd_, nullptr);
}

KeyEventAnswer ShortcutRecorder::recordModifiers(const KeyEvent& event,
                                                 const std::function<void(ModifierSet)>& onCommit) {
    if (event.kind == KeyEvent::Kind::keyDown) {
        if (event.keyCode != escapeKeyCode) {
            return KeyEventAnswer::passOn;
        }
        stop();
        return KeyEventAnswer::swallow;
    }
    const auto held = modifierSet(event.modifiers);
    heldMax_ = heldMax_ | held;
    if (held.empty()) {
        // The monitor goes with the recording.
        const auto commit = onCommit;
        const auto combination = heldMax_;
        const auto onEnd = finish();
        if (!combination.empty()) {
            commit(combination);
        }
        onEnd();
    }
    return KeyEventAnswer::passOn;
}

KeyEventAnswer ShortcutRecorder::recordKey(const KeyEvent& event,
                                           const std::function<void(const RecordedKey&)>& onCommit) {
    if (event.kind != KeyEvent::Kind::keyDown) {
        return KeyEventAnswer::passOn;
    }
    if (event.keyCode == escapeKeyCode) {
        stop();
        return KeyEventAnswer::swallow;
    }
    const auto commit = onCommit;
    const auto onEnd = finish();
    commit(recorded(event.keyCode));
    onEnd();
    return KeyEventAnswer::swallow;
}

} // namespace karto
