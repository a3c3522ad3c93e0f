#pragma once
// The feed: a signed text that says which version of the program is the newest and where its package lies.
//
// Its first line is a comment with an Ed25519 signature over all bytes after that line, which are TOML.
// Nothing of the text is read before the signature has proved right.

#include "Karto/Updates/Sha256.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

// The public half of the key that feeds are signed with.
struct FeedKey {
    std::array<std::uint8_t, 32> bytes{};

    // From base64; absent for everything that is no key.
    static std::optional<FeedKey> fromText(std::string_view text);

    bool operator==(const FeedKey&) const = default;
};

struct UpdateFeed {
    // A longer text is no feed.
    static constexpr std::uint64_t maximumBytes = 65'536;
    static constexpr std::uint64_t maximumPackageBytes = std::uint64_t{64} << 20U;

    std::string version;
    // When it was signed: of two feeds the later one counts.
    std::chrono::sys_seconds date;
    // Plain text for a person.
    std::string notes;
    std::string packageAddress;
    std::uint64_t packageSize = 0;
    Sha256Digest packageDigest;
    std::chrono::sys_seconds believedUntil;
    // Where a person downloads the program; that of the package when the feed names none.
    std::string page;

    bool operator==(const UpdateFeed&) const = default;
};

// The signed text, without the line of the signature. The error is a sentence for a person, here and below.
std::expected<std::string_view, std::string> signedText(std::string_view bytes, const FeedKey& key);

// Of a text whose signature is right. Keys that it does not know are for later versions.
std::expected<UpdateFeed, std::string> parseSignedText(std::string_view text);

std::expected<UpdateFeed, std::string> readUpdateFeed(std::string_view bytes, const FeedKey& key);

} // namespace karto
