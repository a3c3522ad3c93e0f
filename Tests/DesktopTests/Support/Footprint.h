#pragma once
// What a process takes of the machine and of its X server.

#include "Support/XClient.h"

#include <sys/types.h>

#include <cstdint>

namespace karto::desktop {

struct Footprint {
    long residentKilobytes = 0;
    long descriptors = 0;
    // Of all its connections.
    long serverResources = 0;
    long pixmapKilobytes = 0;
};

// Windows, pixmaps, pictures and whatever else the server keeps for the client whose identifiers begin with
// that one.
long resourcesOf(const XClient& x, std::uint32_t firstIdentifier);

Footprint footprintOf(const XClient& x, pid_t process);

} // namespace karto::desktop
