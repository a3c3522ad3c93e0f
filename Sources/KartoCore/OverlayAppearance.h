#pragma once
// How the zone overlay looks: as written in the configuration, and resolved for drawing.

#include <optional>
#include <string>
#include <string_view>

namespace karto {

// Channels are fractions, 0 to 1.
struct RGBColor {
    double red = 1;
    double green = 1;
    double blue = 1;

    static constexpr RGBColor white() { return {}; }

    // From "#RRGGBB" in either case; absent for any other text.
    static std::optional<RGBColor> fromHex(std::string_view hex);
    // "#RRGGBB" in upper case.
    [[nodiscard]] std::string hex() const;

    bool operator==(const RGBColor&) const = default;
};

// The [overlay] table as written; absent keys take their defaults.
struct OverlayConfig {
    // Seconds.
    std::optional<double> delay;
    std::optional<double> backgroundOpacity;
    // Points.
    std::optional<double> numberSize;
    // "#RRGGBB".
    std::optional<std::string> color;

    bool operator==(const OverlayConfig&) const = default;
};

struct OverlayAppearance {
    // Seconds that the hyper modifiers are held before the overlay shows.
    double delay = 0.3;
    // Opacity of the dark fill behind the zones.
    double backgroundOpacity = 0.18;
    // Point size of the zone numbers.
    double numberSize = 64;
    // Colour of zone borders and numbers.
    RGBColor color;

    bool operator==(const OverlayAppearance&) const = default;
};

// A closed range.
struct Limits {
    double lower = 0;
    double upper = 0;

    // False for a value that is not a number.
    [[nodiscard]] constexpr bool contain(double value) const { return lower <= value && value <= upper; }
};

namespace OverlayLimits {

inline constexpr Limits delay{.lower = 0, .upper = 2};
inline constexpr Limits backgroundOpacity{.lower = 0, .upper = 1};
inline constexpr Limits numberSize{.lower = 8, .upper = 240};

} // namespace OverlayLimits

} // namespace karto
