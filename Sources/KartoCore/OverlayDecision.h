#pragma once
// When the overlay shows and hides, decided from the modifiers held.

#include "KartoCore/ModifierSet.h"

#include <cstdint>

namespace karto {

enum class OverlayDecision : std::uint8_t { show, hide, armDelay, doNothing };

namespace OverlayGate {

struct State {
    bool isShowing = false;
    bool delayElapsed = false;
};

// Hyper counts as held only when exactly the configured modifiers are held and there are any.
OverlayDecision decide(ModifierSet held, ModifierSet configured, State state);

} // namespace OverlayGate

} // namespace karto
