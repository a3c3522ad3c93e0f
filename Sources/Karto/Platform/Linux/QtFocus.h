#pragma once
// Which window of the toolkit has the keyboard.

#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <functional>

namespace karto {

// The toolkit's own connection to the X server, as xcb knows it. Requires Qt's application object.
void* toolkitConnection();

// Hears the number of the window on the server; 0 when none has the keyboard.
[[nodiscard]] Registration observeFocus(std::function<void(std::uint32_t window)> onMove);

} // namespace karto
