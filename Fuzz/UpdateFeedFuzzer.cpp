// Reads a feed of updates, and what is remembered of them, from any bytes. Nothing may crash, nothing
// unsigned may pass, and what reads keeps the promises that the rest of an update relies on.

#include "Karto/Updates/PackageVersion.h"
#include "Karto/Updates/UpdateAddress.h"
#include "Karto/Updates/UpdateFeed.h"
#include "Karto/Updates/UpdateMemory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace karto;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void askEverything(const UpdateFeed& feed) {
    require(PackageVersion::isValid(feed.version));
    require(PackageVersion::compare(feed.version, feed.version) == 0);
    const auto order = PackageVersion::compare(feed.version, "1.0-1");
    require((order < 0) == (PackageVersion::compare("1.0-1", feed.version) > 0));
    require(isSafeUpdateAddress(feed.packageAddress) && isSafeUpdateAddress(feed.page));
    require(feed.packageSize > 0 && feed.packageSize <= UpdateFeed::maximumPackageBytes);
    require(Sha256Digest::fromText(feed.packageDigest.text()) == feed.packageDigest);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    const FeedKey key{.bytes = {1, 2, 3}};
    require(!readUpdateFeed(text, key));
    require(!readUpdateFeed("# signature: " + text, key));
    if (const auto feed = parseSignedText(text)) {
        askEverything(*feed);
    } else {
        require(!feed.error().empty());
    }
    const auto memory = readUpdateMemory(text);
    require(readUpdateMemory(writeUpdateMemory(memory)) == memory);
    return 0;
}
