#include "KartoCore/Utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace karto {

namespace {

// Most text is ASCII, and looking a byte up takes a tenth of the time of decoding it.
std::size_t endOfAscii(std::string_view bytes, std::size_t start) {
    const auto rest = bytes.substr(start);
    const auto* const end = std::ranges::find_if(rest, [](char c) { return (c & 0x80) != 0; });
    return start + static_cast<std::size_t>(end - rest.begin());
}

const utf8proc_uint8_t* asUtf8(std::string_view text) {
    return reinterpret_cast<const utf8proc_uint8_t*>(
        text.data()); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

} // namespace

std::optional<std::size_t> firstNonText(std::string_view bytes) {
    for (auto position = endOfAscii(bytes, 0); position < bytes.size();
         position = endOfAscii(bytes, position)) {
        const auto rest = bytes.substr(position);
        utf8proc_int32_t scalar = 0;
        const auto length =
            utf8proc_iterate(asUtf8(rest), static_cast<utf8proc_ssize_t>(rest.size()), &scalar);
        if (length <= 0) {
            return position;
        }
        position += static_cast<std::size_t>(length);
    }
    return std::nullopt;
}

std::string composed(std::string_view text) {
    utf8proc_uint8_t* bytes = nullptr;
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange)
    const auto options = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);
    const auto length =
        utf8proc_map(asUtf8(text), static_cast<utf8proc_ssize_t>(text.size()), &bytes, options);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(bytes, &std::free);
    return length < 0 ? std::string(text) : std::string(bytes, bytes + length);
}

} // namespace karto
