#include "KartoCore/OverlayDecision.h"

namespace karto {

OverlayDecision OverlayGate::decide(ModifierSet held, ModifierSet configured, State state) {
    const bool hyperHeld = held == configured && !configured.empty();
    if (hyperHeld == state.isShowing) {
        return OverlayDecision::doNothing;
    }
    if (!hyperHeld) {
        return OverlayDecision::hide;
    }
    return state.delayElapsed ? OverlayDecision::show : OverlayDecision::armDelay;
}

} // namespace karto
