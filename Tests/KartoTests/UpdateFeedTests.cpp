#include "Karto/Updates/PackageVersion.h"
#include "Karto/Updates/UpdateAddress.h"
#include "Karto/Updates/UpdateFeed.h"
#include "Karto/Updates/UpdateMemory.h"
#include "Support/MemoryUpdates.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::HasSubstr;

const FeedSigner signer(1);

// The text with one line in the place of the one that begins alike.
std::string with(std::string text, const std::string& line) {
    const auto start = text.find(line.substr(0, line.find(" =")));
    return text.replace(start, text.find('\n', start) - start, line);
}

} // namespace

TEST(PackageVersionTests, orderIsThatOfThePackageInstaller) {
    // From the oldest to the newest.
    const std::vector<std::string> versions{"0.1~~",   "0.1~~a", "0.1~",    "0.1~rc1", "0.1",   "0.1-1",
                                            "0.1-1.1", "0.1-2",  "0.1a",    "0.1+b",   "0.1.1", "0.9",
                                            "0.10",    "1.0",    "1.0-0.1", "1.0-1",   "2",     "20261123",
                                            "1:0.1",   "1:0.2",  "2:0.0.1"};
    for (std::size_t i = 0; i < versions.size(); ++i) {
        for (std::size_t j = 0; j < versions.size(); ++j) {
            EXPECT_EQ(PackageVersion::compare(versions[i], versions[j]), i <=> j)
                << versions[i] << " and " << versions[j];
        }
    }
    for (const auto& [a, b] : {std::pair("1.0", "1.00"), {"1.0", "0:1.0"}, {"1.0", "1.0-0"}, {"1.", "1.0"}}) {
        EXPECT_TRUE(PackageVersion::compare(a, b) == 0) << a << " and " << b;
    }
    for (const auto* text : {"", "v1", "1 0", "1\n", "x:1", "1:", "1:-1", "1/2"}) {
        EXPECT_FALSE(PackageVersion::isValid(text)) << text;
    }
    EXPECT_FALSE(PackageVersion::isValid(std::string(65, '1')));
}

TEST(UpdateFeedTests, aSignedFeedIsRead) {
    const FeedText feed;
    const auto read = readUpdateFeed(signer.sign(feed.text() + "later = [1, 2]\n"), signer.key());
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read->version, "2.0");
    EXPECT_EQ(read->date, std::chrono::sys_days(std::chrono::year(2026) / 11 / 20) + std::chrono::hours(12));
    EXPECT_EQ(read->packageSize, feed.package.size());
    EXPECT_EQ(read->page, read->packageAddress);
    EXPECT_EQ(read->notes, "Zones have rounder corners.");
}

TEST(UpdateFeedTests, everyChangedByteIsRefused) {
    const auto feed = signer.sign(FeedText{}.text());
    for (std::size_t at = 0; at < feed.size(); ++at) {
        for (const int change : {1, 2, 4, 8, 16, 32, 64, 128}) {
            auto changed = feed;
            changed[at] = static_cast<char>(changed[at] ^ change);
            ASSERT_FALSE(readUpdateFeed(changed, signer.key())) << "byte " << at << ", bit " << change;
        }
        ASSERT_FALSE(readUpdateFeed(feed.substr(0, at), signer.key())) << "the first " << at;
    }
    EXPECT_FALSE(readUpdateFeed(feed + '\n', signer.key()));
    EXPECT_EQ(readUpdateFeed(feed, FeedSigner(2).key()).error(),
              "the signature of the list of updates is wrong");
    EXPECT_EQ(readUpdateFeed(FeedText{}.text(), signer.key()).error(), "the list of updates is not signed");
}

TEST(UpdateFeedTests, whatIsMissingOrWrongIsNamed) {
    struct Case {
        std::string line;
        std::string problem;
    };

    const auto text = FeedText{}.text();
    for (const auto& [line, problem] : {
             Case{.line = "version = 2", .problem = "its \"version\" is not a text"},
             Case{.line = "version = \"two\"", .problem = "its \"version\" is not a version"},
             Case{.line = "date = 2026-11-20", .problem = "its \"date\" is not a date with time and offset"},
             Case{.line = "date = 2026-11-20T12:00:00", .problem = "its \"date\" is not"},
             Case{.line = "notes = 1", .problem = "its \"notes\" is not a text"},
             Case{.line = "package = \"http://karto.example/\"", .problem = "is not an address of HTTPS"},
             Case{.line = "package = \"file:///etc/passwd\"", .problem = "is not an address of HTTPS"},
             Case{.line = "size = 0", .problem = "its \"size\" is not between 1 and 67108864"},
             Case{.line = "size = -1", .problem = "its \"size\" is not between"},
             Case{.line = "size = 67108865", .problem = "its \"size\" is not between"},
             Case{.line = "size = 1.5", .problem = "its \"size\" is not a whole number"},
             Case{.line = "sha256 = \"00\"", .problem = "its \"sha256\" is not 64 hexadecimal digits"},
             Case{.line = "believedUntil = true", .problem = "its \"believedUntil\" is not a date"},
             Case{.line = "notes = \"unfinished", .problem = "not valid TOML in line"},
         }) {
        const auto read = parseSignedText(with(text, line));
        ASSERT_FALSE(read) << line;
        EXPECT_THAT(read.error(), HasSubstr(problem));
    }
    for (const std::string key : {"version", "date", "notes", "package", "size", "sha256", "believedUntil"}) {
        auto commentedOut = text;
        const auto read = parseSignedText(commentedOut.insert(text.find(key + " ="), "#"));
        ASSERT_FALSE(read) << key;
        EXPECT_THAT(read.error(), HasSubstr("it lacks \"" + key + "\""));
    }
}

TEST(UpdateFeedTests, addressesAreThoseOfHttpsAndOfTheOwnMachine) {
    for (const auto* address : {"https://karto.example", "https://karto.example:8443/a?b",
                                "http://localhost:8080/feed", "http://127.0.0.1", "http://[::1]:80/"}) {
        EXPECT_TRUE(isSafeUpdateAddress(address)) << address;
    }
    for (const auto* address :
         {"", "https://", "https://:443/", "http://karto.example/", "http://localhost.example/",
          "HTTP://localhost/", "http://localhost@karto.example/", "http://127.0.0.1\\@karto.example/",
          "http://127.0.0.1.example", "file:///tmp/feed", "ftp://localhost/", "https://a b/",
          "https://karto.example/\n", "http://[::1].example/"}) {
        EXPECT_FALSE(isSafeUpdateAddress(address)) << address;
    }
}

TEST(UpdateMemoryTests, whatIsWrittenIsReadAndTheRestForgotten) {
    using namespace std::chrono;
    const UpdateMemory memory{.checksAutomatically = false,
                              .lastCheck = sys_days(year(2026) / 11 / 20) + seconds(1),
                              .failures = 3,
                              .skippedVersion = "1:2.0~rc1-1",
                              .newestFeed = sys_days(year(2026) / 11 / 19)};
    EXPECT_EQ(readUpdateMemory(writeUpdateMemory(memory)), memory);
    EXPECT_EQ(readUpdateMemory(writeUpdateMemory({})), UpdateMemory{});
    for (const auto* text :
         {"", "failures = ", "failures = -1", "lastCheck = \"today\"\nskippedVersion = 'x'"}) {
        EXPECT_EQ(readUpdateMemory(text), UpdateMemory{}) << text;
    }
}

} // namespace karto::testing
