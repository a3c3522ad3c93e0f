#pragma once
// The colour of symbols on the desktop's panels.

#include "Karto/Platform/Registration.h"
#include "KartoCore/OverlayAppearance.h"

#include <functional>

namespace karto {

class PanelLook {
public:
    virtual ~PanelLook() = default;

    // As the panels look now.
    virtual RGBColor ink() = 0;
    // Called when they may have changed.
    [[nodiscard]] virtual Registration observeChanges(std::function<void()> onChange) = 0;
};

} // namespace karto
