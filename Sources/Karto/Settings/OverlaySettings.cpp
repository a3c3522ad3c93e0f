#include "Karto/Settings/OverlaySettings.h"

#include <fmt/format.h>

#include <cmath>

namespace karto::OverlaySettings {

namespace {

constexpr double percent = 100;

} // namespace

const std::array<Slider, 3> sliders{{
    {.label = "Delay before showing",
     .field = &OverlayAppearance::delay,
     .limits = OverlayLimits::delay,
     .step = 0.05,
     .valueText = [](double seconds) { return fmt::format("{:.2f} s", seconds); }},
    {.label = "Zone shading",
     .field = &OverlayAppearance::backgroundOpacity,
     .limits = OverlayLimits::backgroundOpacity,
     .step = 0.01,
     .readFactor = percent,
     .valueText = [](double opacity) { return fmt::format("{:.0f}%", opacity * percent); }},
    {.label = "Zone number size",
     .field = &OverlayAppearance::numberSize,
     .limits = OverlayLimits::numberSize,
     .step = 1,
     .valueText = [](double points) { return fmt::format("{:.0f} pt", points); }},
}};

int lastStep(const Slider& slider) { return nearestStep(slider, slider.limits.upper); }

int nearestStep(const Slider& slider, double value) {
    return static_cast<int>(std::lround((value - slider.limits.lower) / slider.step));
}

double valueAt(const Slider& slider, int step) {
    constexpr double hundredths = 100;
    return std::round((slider.limits.lower + step * slider.step) * hundredths) / hundredths;
}

OverlayAppearance appearance(const KartoConfig& config) {
    return config.overlayAppearance().value_or(OverlayAppearance{});
}

void set(const Slider& slider, double value, LayoutEditor& editor) {
    auto changed = appearance(editor.config());
    changed.*slider.field = value;
    editor.setOverlayAppearanceLive(changed);
}

void setColor(const RGBColor& color, LayoutEditor& editor) {
    auto changed = appearance(editor.config());
    changed.color = color;
    editor.setOverlayAppearanceLive(changed);
}

bool canReset(const KartoConfig& config) { return config.overlay.has_value(); }

} // namespace karto::OverlaySettings
