#pragma once
// What a compositor does to the server's work: every window is kept in memory of its own.

#include "XServer.h"

namespace karto::bench {

// Paints nothing. Lasts as long as the connection.
void standInForCompositor(const XServer& server);

} // namespace karto::bench
