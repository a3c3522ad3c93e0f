#pragma once
// The colour of symbols on the desktop's panels, from the pixels of the largest one; from the upper edge of
// the screen where no panel has a window.

#include "Karto/Platform/Observers.h"
#include "Karto/Platform/PanelLook.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/SelectionOwner.h"
#include "KartoCore/Geometry.h"

#include <optional>

namespace karto::x11 {

class PanelLook final : public karto::PanelLook {
public:
    // Watches the desktop's settings once somebody observes.
    PanelLook(Connection& connection, Scheduler& scheduler);

    RGBColor ink() override;
    [[nodiscard]] Registration observeChanges(std::function<void()> onChange) override;

private:
    [[nodiscard]] PixelRect largestPanel();
    void followSettings();
    void settingsChanged();

    Connection& connection_;
    Scheduler& scheduler_;
    Observers<> observers_;
    // The program that tells others of the desktop's theme.
    std::optional<SelectionOwner> settings_;
    Registration settingsSelection_;
    Registration settingsEvents_;
    Registration soon_;
};

} // namespace karto::x11
