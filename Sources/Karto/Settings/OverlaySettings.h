#pragma once
// The section of the settings that says how the overlay looks: its sliders with their ranges and texts.

#include "KartoCore/Config.h"
#include "KartoCore/LayoutEditor.h"
#include "KartoCore/OverlayAppearance.h"

#include <array>
#include <string>
#include <string_view>

namespace karto::OverlaySettings {

struct Slider {
    std::string_view label;
    double OverlayAppearance::* field = nullptr;
    Limits limits;
    double step = 0;
    // From the value to the number that a person reads.
    double readFactor = 1;
    // What a person reads beside it.
    std::string (*valueText)(double value) = nullptr;
};

// In the order of listing.
extern const std::array<Slider, 3> sliders;

// The configuration's appearance; the default where it has none that can be used.
OverlayAppearance appearance(const KartoConfig& config);

// A slider counts its steps from the lower limit. The values in between are short decimals.
int lastStep(const Slider& slider);
int nearestStep(const Slider& slider, double value);
double valueAt(const Slider& slider, int step);

// Both change one thing without an undo step; the end of the gesture commits it.
void set(const Slider& slider, double value, LayoutEditor& editor);
void setColor(const RGBColor& color, LayoutEditor& editor);

// Whether there is anything to be reset to the defaults.
bool canReset(const KartoConfig& config);

} // namespace karto::OverlaySettings
