#pragma once
// The modifier keys held, as the keyboard extension reports them.

#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Keyboard/Keyboard.h"
#include "Karto/Platform/X11/Keyboard/Xkb.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <cstdint>

namespace karto::x11 {

class ModifierEvents final : public karto::ModifierEvents {
public:
    explicit ModifierEvents(Connection& connection);

    Registration observe(std::function<void(ModifierFlags)> onChange) override;
    ModifierFlags held() override;

private:
    void handle(const Xkb& xkb, const xcb_generic_event_t& event);
    // Asks the server which keys are held.
    void look();
    // The program's bits for real modifiers, by the keyboard as it is now.
    ModifierFlags flags(unsigned realModifiers);

    Connection& connection_;
    ModifierMasks masks_;
    bool masksAreCurrent_ = false;
    ModifierFlags held_;
    Deadline nextLook_;
    Observers<ModifierFlags> observers_;
    // Absent without the keyboard extension.
    Registration events_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
