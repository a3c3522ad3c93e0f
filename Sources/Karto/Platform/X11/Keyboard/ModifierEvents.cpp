#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"

#include <chrono>
#include <utility>

namespace karto::x11 {

namespace {

// Listeners look at the keys in step with one another: one answer serves them all.
constexpr std::chrono::milliseconds answerLasts{100};

} // namespace

ModifierEvents::ModifierEvents(Connection& connection)
    : connection_(connection) {
    const auto xkb = Xkb::use(connection);
    if (!xkb) {
        return;
    }
    xkb->selectKeyboardChanges();
    xkb->selectHeldModifiers();
    events_ = connection_.observe(
        callbacks_.wrap([this, xkb = *xkb](const xcb_generic_event_t& event) { handle(xkb, event); }));
    look();
}

Registration ModifierEvents::observe(std::function<void(ModifierFlags)> onChange) {
    return events_ ? observers_.add(std::move(onChange)) : Registration();
}

ModifierFlags ModifierEvents::held() {
    if (events_ && std::chrono::steady_clock::now() >= nextLook_ && connection_.takesRequests()) {
        look();
    }
    return held_;
}

void ModifierEvents::look() {
    const auto request = xcb_xkb_get_state(connection_.get(), coreKeyboard);
    const auto state = connection_.await<xcb_xkb_get_state_reply_t>(request, deadlineFromNow());
    if (state) {
        held_ = flags(unsigned{state->baseMods} | state->latchedMods);
    }
    nextLook_ = deadlineFromNow(answerLasts);
}

void ModifierEvents::handle(const Xkb& xkb, const xcb_generic_event_t& event) {
    if (xkb.isKeyboardChange(event)) {
        masksAreCurrent_ = false;
        const auto before = held_;
        look();
        if (held_ != before) {
            observers_.notify(held_);
        }
        return;
    }
    const auto* const news = xkb.heldModifiers(event);
    if (news == nullptr) {
        return;
    }
    held_ = flags(unsigned{news->baseMods} | news->latchedMods);
    observers_.notify(held_);
}

ModifierFlags ModifierEvents::flags(unsigned realModifiers) {
    if (!masksAreCurrent_) {
        if (const auto keyboard = readKeyboard(connection_)) {
            masks_ = keyboard->map.modifiers;
            masksAreCurrent_ = true;
        }
    }
    return {.bits = masks_.modifierBits(static_cast<std::uint8_t>(realModifiers))};
}

} // namespace karto::x11
