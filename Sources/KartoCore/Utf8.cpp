#include "KartoCore/Utf8.h"

#include <utf8proc.h>

namespace karto {

std::optional<std::size_t> firstNonText(std::string_view bytes) {
    std::size_t position = 0;
    while (position < bytes.size()) {
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
