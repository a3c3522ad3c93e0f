#pragma once
// The connected displays.

#include "KartoCore/DisplayInfo.h"

#include <vector>

namespace karto {

class DisplayProviding {
public:
    virtual ~DisplayProviding() = default;

    // The primary display first; valid until the displays change.
    virtual const std::vector<DisplayInfo>& displays() = 0;
};

} // namespace karto
