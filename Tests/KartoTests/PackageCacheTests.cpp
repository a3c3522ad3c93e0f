#include "Karto/Platform/Linux/Updates/PackageCache.h"
#include "Support/Restrictions.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace karto::testing {

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class PackageCacheTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string contents() {
        std::string bytes;
        EXPECT_TRUE(cache->read([&](std::string_view more) { bytes += more; }));
        return bytes;
    }

    [[nodiscard]] std::string refusal() {
        const auto opened = cache->open("a.deb");
        return opened ? "none" : opened.error();
    }

    TemporaryFolder folder;
    fs::path place = folder.path() / "cache/karto/updates";
    std::optional<PackageCache> cache{place};
};

} // namespace

TEST_F(PackageCacheTest, aPackageGrowsUnseenAndGetsItsNameWhenItIsWhole) {
    EXPECT_EQ(cache->open("a.deb"), 0U);
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(cache->append("the by"));
    EXPECT_EQ(cache->open("a.deb"), 6U);
    EXPECT_TRUE(cache->append("tes"));
    EXPECT_EQ(contents(), "the bytes");
    EXPECT_FALSE(fs::exists(place / "a.deb"));
    EXPECT_EQ(cache->finish(), place / "a.deb");
    EXPECT_EQ(readFile(place / "a.deb"), "the bytes");
    EXPECT_EQ(fs::status(place / "a.deb").permissions(), fs::perms::owner_read | fs::perms::owner_write);

    EXPECT_EQ(cache->open("a.deb"), 9U);
    EXPECT_TRUE(cache->startOver());
    EXPECT_TRUE(cache->append("new"));
    EXPECT_EQ(contents(), "new");
    EXPECT_EQ(cache->open("b.deb"), 0U);
    EXPECT_EQ(std::distance(fs::directory_iterator(place), {}), 1);
    cache->clear();
    EXPECT_TRUE(fs::is_empty(place));
}

TEST_F(PackageCacheTest, aKilledProgramsPackageIsGoneOnWithOrCleaned) {
    EXPECT_EQ(cache->open("a.deb"), 0U);
    EXPECT_TRUE(cache->append("the"));
    cache.emplace(place);
    EXPECT_EQ(cache->open("a.deb"), 3U);
    cache.emplace(place);
    cache->clear();
    EXPECT_TRUE(fs::is_empty(place));
    fs::remove(place);
    cache->clear();
    EXPECT_FALSE(fs::exists(place));
}

TEST_F(PackageCacheTest, aFolderThatIsNotItsOwnIsRefused) {
    fs::create_directories(place.parent_path());
    fs::create_directory(folder.path() / "elsewhere");
    writeFile(folder.path() / "elsewhere/precious", "kept");
    fs::create_directory_symlink(folder.path() / "elsewhere", place);
    EXPECT_THAT(refusal(), HasSubstr("is not a folder of its own, or a link"));
    cache->clear();
    EXPECT_EQ(readFile(folder.path() / "elsewhere/precious"), "kept");

    fs::remove(place);
    writeFile(place, "");
    EXPECT_THAT(refusal(), HasSubstr("is not a folder of its own, or a link"));

    fs::remove(place);
    fs::create_directory(place);
    fs::permissions(place, fs::perms::all);
    EXPECT_EQ(refusal(), "none");
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
    PackageCache another(place);
    EXPECT_EQ(another.open("a.deb").error(), "another Karto is updating at the moment");
    cache->close();
    EXPECT_TRUE(another.open("a.deb"));
}

TEST_F(PackageCacheTest, filesThatAreNotItsOwnAreReplacedOrRefused) {
    fs::create_directories(place);
    writeFile(folder.path() / "precious", "kept");
    fs::create_symlink(folder.path() / "precious", place / "a.deb.part");
    EXPECT_THAT(refusal(), HasSubstr("the package cannot be stored"));
    EXPECT_EQ(readFile(folder.path() / "precious"), "kept");
    fs::remove(place / "a.deb.part");
    ::mkfifo((place / "a.deb.part").c_str(), 0600);
    EXPECT_THAT(refusal(), HasSubstr("is not a regular file"));
}

TEST_F(PackageCacheTest, aFullDiskAndAFolderThatCannotBeWrittenAreNamed) {
    ASSERT_TRUE(cache->open("a.deb"));
    {
        const FullDisk disk(3);
        const auto stored = cache->append("the bytes");
        ASSERT_FALSE(stored);
        EXPECT_EQ(stored.error(), "the package cannot be stored — file too large");
    }
    cache.emplace(folder.path() / "locked/updates");
    fs::create_directory(folder.path() / "locked");
    fs::permissions(folder.path() / "locked", fs::perms::owner_read | fs::perms::owner_exec);
    fs::permissions(folder.path(), fs::perms::all);
    const OrdinaryUser user;
    EXPECT_THAT(refusal(), HasSubstr("cannot be made — permission denied"));
}

} // namespace karto::testing
