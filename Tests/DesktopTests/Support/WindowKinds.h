#pragma once
// The kinds of windows that window managers treat differently, each of which a zone has to fit.

#include "Support/Application.h"
#include "Support/SampleZones.h"

#include <string>
#include <vector>

namespace karto::desktop {

struct WindowKind {
    enum class Size : std::uint8_t { exact, upToOneStepShort, neverSmaller, itsOwn };

    std::string name;
    Rect start = somewhere;
    Size size = Size::exact;

    [[nodiscard]] Application open(PrivateDesktop& desktop) const;
};

// A window of the kind "maximized" is a plain one, for the test to maximize.
extern const std::vector<WindowKind> windowKinds;

} // namespace karto::desktop
