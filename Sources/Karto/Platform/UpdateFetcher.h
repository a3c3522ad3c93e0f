#pragma once
// Gets the bytes behind an address of the network.

#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

struct FetchRequest {
    std::string address;
    // From which byte on, if the server can; else it sends all of them.
    std::uint64_t offset = 0;

    bool operator==(const FetchRequest&) const = default;
};

// What is heard of one fetch, from the event loop: where the bytes begin, the bytes, and once the end.
struct FetchReport {
    std::function<void(std::uint64_t offset)> onBegin;
    std::function<void(std::string_view bytes)> onBytes;
    // The problem is a clause for a person; absent when all bytes have come.
    std::function<void(const std::optional<std::string>& problem)> onEnd;
};

class UpdateFetcher {
public:
    virtual ~UpdateFetcher() = default;

    // Ending the registration, also from within a report, ends the fetch; nothing more is heard of it then.
    [[nodiscard]] virtual Registration fetch(const FetchRequest& request, FetchReport report) = 0;
};

} // namespace karto
