#pragma once
// What is typed into the program's own windows, before their controls see it.

#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace karto {

struct KeyEvent {
    enum class Kind : std::uint8_t { keyDown, modifiersChanged };

    Kind kind = Kind::keyDown;
    // The program's code of the physical key; absent for a key that has none. Of a keyDown alone.
    std::optional<std::uint32_t> keyCode;
    // The modifier keys held after the event.
    ModifierFlags modifiers;
};

enum class KeyEventAnswer : std::uint8_t { passOn, swallow };

class KeyEvents {
public:
    virtual ~KeyEvents() = default;

    // Repetitions of a key that is held are not reported, and go where the first press went.
    [[nodiscard]] virtual Registration observe(std::function<KeyEventAnswer(const KeyEvent&)> onEvent) = 0;
};

} // namespace karto
