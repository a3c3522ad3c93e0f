#include "Karto/Updates/UpdateFeed.h"
#include "Support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cstdlib>

namespace karto::testing {

namespace {

class SignFeedTest : public ::testing::Test {
protected:
    // Runs a line of shell in the folder; its status. What it prints is in the file "out".
    [[nodiscard]] int run(const std::string& line) const {
        const auto command = fmt::format("cd {} && sign={} && ( {} ) >out 2>&1", folder.path().native(),
                                         KARTO_SIGN_FEED_SCRIPT, line);
        return std::system(command.c_str()); // NOLINT(*-mt-unsafe,*-env33-c)
    }

    [[nodiscard]] std::string out() const { return readFile(folder.path() / "out"); }

    TemporaryFolder folder;
};

} // namespace

TEST_F(SignFeedTest, whatTheScriptSignsIsReadAndCheckedAndNothingElse) {
    std::filesystem::create_directories(folder.path() / "p/DEBIAN");
    writeFile(folder.path() / "p/DEBIAN/control",
              "Package: karto\nVersion: 1:2.0-1\nArchitecture: all\nMaintainer: a\nDescription: b\n");
    writeFile(folder.path() / "notes", "Say \"hyper\".\nBackslash \\ and '''.\n");
    ASSERT_EQ(run("dpkg-deb --root-owner-group --build p p.deb && $sign key secret"), 0) << out();
    ASSERT_EQ(run("openssl pkey -in secret -pubout -outform DER | tail -c 32 | base64 >public"), 0);
    ASSERT_EQ(run("$sign feed secret p.deb https://karto.example/p.deb notes 5 https://karto.example/ >feed"),
              0)
        << out();
    auto line = readFile(folder.path() / "public");
    line.pop_back();
    const auto key = FeedKey::fromText(line);
    ASSERT_TRUE(key) << line;
    const auto feed = readUpdateFeed(readFile(folder.path() / "feed"), *key);
    ASSERT_TRUE(feed) << feed.error();
    EXPECT_EQ(feed->version, "1:2.0-1");
    EXPECT_EQ(feed->notes, "Say \"hyper\".\nBackslash \\ and '''.");
    EXPECT_EQ(feed->page, "https://karto.example/");
    EXPECT_EQ(feed->packageSize, std::filesystem::file_size(folder.path() / "p.deb"));
    EXPECT_EQ(feed->believedUntil - feed->date, std::chrono::days(5));

    EXPECT_EQ(run("$sign check feed $(cat public) p.deb"), 0) << out();
    EXPECT_THAT(out(), ::testing::StartsWith("Right: version 1:2.0-1 of "));
    EXPECT_NE(run("$sign key secret"), 0);
    EXPECT_NE(run("sed s/2.0/2.1/ feed >changed; $sign check changed $(cat public)"), 0);
    EXPECT_NE(run("cat p.deb public >q.deb; $sign check feed $(cat public) q.deb"), 0);
    EXPECT_EQ(out(), "The package has other bytes.\n");
    // What nobody could use is not signed.
    for (const auto* arguments :
         {"p.deb http://karto.example/p.deb notes", "p.deb https://karto.example/p.deb notes 5 file:///etc",
          "p.deb https://karto.example/p.deb notes soon", "missing https://karto.example/p.deb notes",
          "notes https://karto.example/p.deb notes", "p.deb https://karto.example/p.deb p.deb"}) {
        EXPECT_NE(run(fmt::format("$sign feed secret {}", arguments)), 0) << arguments;
        EXPECT_FALSE(out().contains("signature")) << arguments;
    }
}

} // namespace karto::testing
