#include "Karto/Updates/UpdateFeed.h"

#include "Karto/Updates/PackageVersion.h"
#include "Karto/Updates/TomlTime.h"
#include "Karto/Updates/UpdateAddress.h"
#include "KartoCore/TomlDocument.h"
#include "KartoCore/TomlTables.h"

#include <fmt/format.h>
#include <sodium.h>

#include <utility>

namespace karto {

namespace {

constexpr std::string_view signatureMark = "# signature: ";

// Exactly that many bytes, in the one way to write them.
template<std::size_t size>
std::optional<std::array<std::uint8_t, size>> fromBase64(std::string_view text) {
    std::array<std::uint8_t, size> bytes{};
    std::size_t length = 0;
    const char* end = nullptr;
    const bool isRead = sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr,
                                          &length, &end, sodium_base64_VARIANT_ORIGINAL) == 0;
    if (!isRead || length != size || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return bytes;
}

const std::uint8_t* octets(std::string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data()); // NOLINT(*-reinterpret-cast)
}

template<typename Value>
std::optional<Value> valueOf(const toml::node& node) {
    if constexpr (std::is_same_v<Value, std::chrono::sys_seconds>) {
        return momentOf(node);
    } else {
        return node.value_exact<Value>();
    }
}

// Takes values out of the feed's table and remembers the first thing that is wrong.
class Reader {
public:
    explicit Reader(const toml::table& table)
        : table_(table) {}

    template<typename Value>
    Value take(std::string_view key, std::string_view kind) {
        const toml::node* const node = table_.get(key);
        if (node == nullptr) {
            refuse(fmt::format("it lacks \"{}\"", key));
            return {};
        }
        const auto value = valueOf<Value>(*node);
        require(value.has_value(), key, kind);
        return value.value_or(Value{});
    }

    [[nodiscard]] bool has(std::string_view key) const { return table_.contains(key); }

    void require(bool holds, std::string_view key, std::string_view kind) {
        if (!holds) {
            refuse(fmt::format("its \"{}\" is not {}", key, kind));
        }
    }

    [[nodiscard]] const std::optional<std::string>& problem() const { return problem_; }

private:
    void refuse(std::string problem) {
        if (!problem_) {
            problem_ = std::move(problem);
        }
    }

    const toml::table& table_;
    std::optional<std::string> problem_;
};

constexpr std::string_view address = "an address of HTTPS";

UpdateFeed takeFeed(Reader& reader) {
    UpdateFeed feed;
    feed.version = reader.take<std::string>("version", "a text");
    reader.require(PackageVersion::isValid(feed.version), "version", "a version");
    feed.date = reader.take<std::chrono::sys_seconds>("date", "a date with time and offset");
    feed.notes = reader.take<std::string>("notes", "a text");
    feed.packageAddress = reader.take<std::string>("package", "a text");
    reader.require(isSafeUpdateAddress(feed.packageAddress), "package", address);
    feed.packageSize = static_cast<std::uint64_t>(reader.take<std::int64_t>("size", "a whole number"));
    reader.require(feed.packageSize > 0 && feed.packageSize <= UpdateFeed::maximumPackageBytes, "size",
                   fmt::format("between 1 and {}", UpdateFeed::maximumPackageBytes));
    const auto digest = Sha256Digest::fromText(reader.take<std::string>("sha256", "a text"));
    reader.require(digest.has_value(), "sha256", "64 hexadecimal digits");
    feed.packageDigest = digest.value_or(Sha256Digest{});
    feed.believedUntil =
        reader.take<std::chrono::sys_seconds>("believedUntil", "a date with time and offset");
    feed.page = reader.has("page") ? reader.take<std::string>("page", "a text") : feed.packageAddress;
    reader.require(isSafeUpdateAddress(feed.page), "page", address);
    return feed;
}

std::unexpected<std::string> unreadable(std::string_view problem) {
    return std::unexpected(fmt::format("the list of updates cannot be read: {}", problem));
}

} // namespace

std::optional<FeedKey> FeedKey::fromText(std::string_view text) {
    const auto bytes = fromBase64<crypto_sign_PUBLICKEYBYTES>(text);
    return bytes ? std::optional(FeedKey{.bytes = *bytes}) : std::nullopt;
}

std::expected<std::string_view, std::string> signedText(std::string_view bytes, const FeedKey& key) {
    const auto lineEnd = bytes.find('\n');
    if (!bytes.starts_with(signatureMark) || lineEnd == std::string_view::npos) {
        return std::unexpected("the list of updates is not signed");
    }
    const auto text = bytes.substr(lineEnd + 1);
    const auto signature =
        fromBase64<crypto_sign_BYTES>(bytes.substr(signatureMark.size(), lineEnd - signatureMark.size()));
    if (!signature || sodium_init() < 0 ||
        crypto_sign_verify_detached(signature->data(), octets(text), text.size(), key.bytes.data()) != 0) {
        return std::unexpected("the signature of the list of updates is wrong");
    }
    return text;
}

std::expected<UpdateFeed, std::string> parseSignedText(std::string_view text) {
    const auto document = parseTomlDocument(text);
    if (!document) {
        return unreadable(document.error().describe());
    }
    Reader reader((*document)->root);
    auto feed = takeFeed(reader);
    if (const auto& problem = reader.problem()) {
        return unreadable(*problem);
    }
    return feed;
}

std::expected<UpdateFeed, std::string> readUpdateFeed(std::string_view bytes, const FeedKey& key) {
    const auto text = signedText(bytes, key);
    return text ? parseSignedText(*text) : std::unexpected(text.error());
}

} // namespace karto
