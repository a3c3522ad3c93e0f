#include "Support/MemoryUpdates.h"

#include <fmt/format.h>
#include <sodium.h>

#include <utility>

namespace karto::testing {

namespace {

const unsigned char* octets(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data()); // NOLINT(*-reinterpret-cast)
}

} // namespace

FeedSigner::FeedSigner(std::uint8_t seed) {
    std::array<std::uint8_t, crypto_sign_SEEDBYTES> seeds{};
    seeds.fill(seed);
    crypto_sign_seed_keypair(key_.bytes.data(), secret_.data(), seeds.data());
}

std::string FeedSigner::sign(const std::string& text) const {
    std::array<std::uint8_t, crypto_sign_BYTES> signature{};
    crypto_sign_detached(signature.data(), nullptr, octets(text), text.size(), secret_.data());
    std::array<char, sodium_base64_ENCODED_LEN(crypto_sign_BYTES, sodium_base64_VARIANT_ORIGINAL)> line{};
    sodium_bin2base64(line.data(), line.size(), signature.data(), signature.size(),
                      sodium_base64_VARIANT_ORIGINAL);
    return fmt::format("# signature: {}\n{}", line.data(), text);
}

std::string FeedText::text() const {
    Sha256 hash;
    hash.add(package);
    return fmt::format(R"(version = "{}"
date = {}
believedUntil = {}
package = "https://karto.example/karto.deb"
size = {}
sha256 = "{}"
notes = "Zones have rounder corners."
)",
                       version, date, believedUntil, package.size(), hash.digest().text());
}

Registration ManualFetcher::fetch(const FetchRequest& request, FetchReport newReport) {
    requests.push_back(request);
    report = std::move(newReport);
    return Registration([this] { report.reset(); });
}

void ManualFetcher::send(std::uint64_t offset, const std::string& bytes) const {
    if (const auto now = report) {
        now->onBegin(offset);
    }
    if (const auto now = report) {
        now->onBytes(bytes);
    }
}

void ManualFetcher::end(const std::optional<std::string>& problem) const {
    if (const auto now = report) {
        now->onEnd(problem);
    }
}

void ManualFetcher::answer(const std::string& bytes) const {
    send(0, bytes);
    end();
}

std::expected<std::uint64_t, std::string> MemoryUpdateStore::open(const std::string& newName) {
    if (problem) {
        return std::unexpected(*problem);
    }
    if (std::exchange(name, newName) != newName) {
        bytes.clear();
    }
    return bytes.size();
}

std::expected<void, std::string> MemoryUpdateStore::append(std::string_view added) {
    if (problem) {
        return std::unexpected(*problem);
    }
    bytes += added;
    return {};
}

std::expected<void, std::string> MemoryUpdateStore::startOver() {
    bytes.clear();
    return {};
}

std::expected<void, std::string>
MemoryUpdateStore::read(const std::function<void(std::string_view)>& onBytes) {
    onBytes(bytes);
    return {};
}

std::expected<std::string, std::string> MemoryUpdateStore::finish() { return "/cache/" + name; }

void MemoryUpdateStore::clear() {
    ++cleared;
    name.clear();
    bytes.clear();
}

Registration ManualInstaller::install(const std::string& package,
                                      std::function<void(const InstallOutcome&)> end) {
    packages.push_back(package);
    onEnd = std::move(end);
    return Registration([this] { onEnd = nullptr; });
}

void ManualInstaller::end(InstallOutcome::Kind kind, const std::string& problem) const {
    if (const auto report = onEnd) {
        report({.kind = kind, .problem = problem});
    }
}

} // namespace karto::testing
