#include "KartoCore/Utf8.h"

#include <utf8proc.h>

#include <algorithm>

namespace karto {

namespace {

// Most text is ASCII, and looking a byte up takes a tenth of the time of decoding it.
std::size_t endOfAscii(std::string_view bytes, std::size_t start) {
    const auto rest = bytes.substr(start);
    const auto* const end = std::ranges::find_if(rest, [](char c) { return (c & 0x80) != 0; });
    return start + static_cast<std::size_t>(end - rest.begin());
}

} // namespace

std::optional<std::size_t> firstNonText(std::string_view bytes) {
    for (auto position = endOfAscii(bytes, 0); position < bytes.size();
         position = endOfAscii(bytes, position)) {
        const auto rest = bytes.substr(position);
        utf8proc_int32_t scalar = 0;
        const auto length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(
                                 rest.data()), // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
                             static_cast<utf8proc_ssize_t>(rest.size()), &scalar);
        if (length <= 0) {
            return position;
        }
        position += static_cast<std::size_t>(length);
    }
    return std::nullopt;
}

} // namespace karto
