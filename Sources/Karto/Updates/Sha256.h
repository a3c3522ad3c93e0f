#pragma once
// SHA-256 of bytes that come in pieces.

#include <sodium/crypto_hash_sha256.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

struct Sha256Digest {
    std::array<std::uint8_t, crypto_hash_sha256_BYTES> bytes{};

    // 64 hexadecimal digits, the letters in lower case.
    [[nodiscard]] std::string text() const;
    // Absent for every other text.
    static std::optional<Sha256Digest> fromText(std::string_view text);

    bool operator==(const Sha256Digest&) const = default;
};

class Sha256 {
public:
    Sha256();

    void add(std::string_view bytes);
    // Of everything added; once.
    [[nodiscard]] Sha256Digest digest();

private:
    crypto_hash_sha256_state state_{};
};

} // namespace karto
