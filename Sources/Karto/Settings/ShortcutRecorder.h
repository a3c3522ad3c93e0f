#pragma once
// Captures a combination of modifiers or a single key from what is typed into the program's windows. One
// recording at a time; each ends exactly once, by what was recorded, by escape or by stop().

#include "Karto/Platform/KeyEvents.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "KartoCore/CommandKey.h"
#include "KartoCore/ModifierSet.h"

#include <cstdint>
#include <functional>
#include <variant>

namespace karto {

class ShortcutRecorder {
public:
    // A key that picks a zone, or one that no command may have.
    enum class OtherKey : std::uint8_t { digit, unsupported };
    using RecordedKey = std::variant<CommandKey, OtherKey>;

    explicit ShortcutRecorder(KeyEvents& events);

    // Hands over every modifier that was held at any time until all of them were released. Nothing while a
    // recording is running.
    void start(std::function<void(ModifierSet)> onCommit, std::function<void()> onEnd);
    // Hands over the next key, whatever modifiers are held with it. Nothing while a recording is running.
    void startKey(std::function<void(const RecordedKey&)> onCommit, std::function<void()> onEnd);

    void stop();

    [[nodiscard]] bool isRecording() const { return isRecording_; }

private:
    void begin(std::function<void()> onEnd, std::function<KeyEventAnswer(const KeyEvent&)> onEvent);
    // Ends the recording, and returns what is to hear of its end.
    std::function<void()> finish();
    KeyEventAnswer recordModifiers(const KeyEvent& event, const std::function<void(ModifierSet)>& onCommit);
    KeyEventAnswer recordKey(const KeyEvent& event, const std::function<void(const RecordedKey&)>& onCommit);

    KeyEvents& events_;
    Registration monitor_;
    bool isRecording_ = false;
    ModifierSet heldMax_;
    std::function<void()> onEnd_;
};

} // namespace karto
