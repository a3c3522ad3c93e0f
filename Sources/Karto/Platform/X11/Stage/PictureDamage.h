#pragma once
// Where two pictures differ.

#include "KartoCore/Picture.h"

#include <vector>

namespace karto::x11 {

// Areas that do not overlap, outside of which both pictures look the same. They are small where one picture
// comes from the other by changing, adding, moving and resizing tiles without changing their order.
std::vector<PixelRect> damage(const Picture& before, const Picture& after);

} // namespace karto::x11
