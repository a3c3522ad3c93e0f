#include "Karto/Updates/Sha256.h"

#include <sodium.h>

namespace karto {

namespace {

constexpr std::size_t textLength = std::size_t{2} * crypto_hash_sha256_BYTES;

} // namespace

std::string Sha256Digest::text() const {
    // The encoder ends its text with a zero.
    std::string text(textLength + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
    text.pop_back();
    return text;
}

std::optional<Sha256Digest> Sha256Digest::fromText(std::string_view text) {
    Sha256Digest digest;
    if (text.size() != textLength ||
        sodium_hex2bin(digest.bytes.data(), digest.bytes.size(), text.data(), text.size(), nullptr, nullptr,
                       nullptr) != 0 ||
        digest.text() != text) {
        return std::nullopt;
    }
    return digest;
}

Sha256::Sha256() { crypto_hash_sha256_init(&state_); }

void Sha256::add(std::string_view bytes) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    crypto_hash_sha256_update(&state_, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

Sha256Digest Sha256::digest() {
    Sha256Digest digest;
    crypto_hash_sha256_final(&state_, digest.bytes.data());
    return digest;
}

} // namespace karto
