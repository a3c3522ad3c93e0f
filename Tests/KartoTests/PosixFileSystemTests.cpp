#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Support/Restrictions.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <tuple>
#include <utility>
#include <vector>

namespace karto::testing {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

FileError otherError(const std::string& message) {
    return {.kind = FileError::Kind::other, .message = message};
}

struct stat statusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status;
}

class PosixFileSystemTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string at(const std::string& name) const { return (folder.path() / name).native(); }

    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    TemporaryFolder folder;
    PosixFileSystem files;
};

TEST_F(PosixFileSystemTest, replacingAFileKeepsItsPermissionsAndOwner) {
    for (const mode_t mode : {0600U, 0640U, 0666U, 0444U}) {
        writeFile(at("file"), "old");
        // Only root may give a file away; for anyone else it stays where it was.
        std::ignore = ::chown(at("file").c_str(), 1234, 4321);
        ::chmod(at("file").c_str(), mode);
        const auto before = statusOf(at("file"));
        ASSERT_TRUE(files.writeAtomically(at("file"), "new"));
        EXPECT_EQ(readFile(at("file")), "new");
        const auto after = statusOf(at("file"));
        EXPECT_EQ(after.st_mode, before.st_mode);
        EXPECT_EQ(after.st_uid, before.st_uid);
        EXPECT_EQ(after.st_gid, before.st_gid);
        EXPECT_NE(after.st_ino, before.st_ino) << "written in place";
    }
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(PosixFileSystemTest, aNewFileFollowsTheUmask) {
    for (const mode_t mask : {022U, 077U}) {
        const auto before = ::umask(mask);
        EXPECT_TRUE(files.writeAtomically(at("new"), ""));
        ::umask(before);
        EXPECT_EQ(statusOf(at("new")).st_mode, S_IFREG | (0644U & ~mask));
        fs::remove(at("new"));
    }
}

TEST_F(PosixFileSystemTest, aWriteRemovesWhatACrashLeftOfTheSameFileAlone) {
    const auto age = [&](const std::string& name, std::chrono::seconds seconds) {
        fs::last_write_time(at(name), fs::last_write_time(at(name)) - seconds);
    };
    writeFile(at(".file.karto-0123456789abcdef"), "half");
    age(".file.karto-0123456789abcdef", 62s);
    // Perhaps not left: another process may be about to give it its name.
    writeFile(at(".file.karto-fedcba9876543210"), "in flight");
    age(".file.karto-fedcba9876543210", 50s);
    writeFile(at(".file.karto-notes"), "kept");
    writeFile(at(".other.karto-0123456789abcdef"), "kept");
    age(".file.karto-notes", 1h);
    age(".other.karto-0123456789abcdef", 1h);
    ASSERT_TRUE(files.writeAtomically(at("file"), "new"));
    EXPECT_THAT(names(), UnorderedElementsAre("file", ".file.karto-notes", ".file.karto-fedcba9876543210",
                                              ".other.karto-0123456789abcdef"));
}

TEST_F(PosixFileSystemTest, aFailedWriteLeavesTheOldFileAndNothingElse) {
    writeFile(at("file"), "old");
    const auto write = [&] { return files.writeAtomically(at("file"), std::string(200'000, 'x')); };
    EXPECT_EQ((FullDisk(100'000), write()).error(), otherError("file too large"));
    ::chmod(folder.path().c_str(), 0555);
    EXPECT_EQ((OrdinaryUser(), write()).error(), otherError("permission denied"));
    ::chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(readFile(at("file")), "old");
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(PosixFileSystemTest, onlyRegularFilesAreReadOrReplaced) {
    fs::create_directory(at("folder"));
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    fs::create_symlink("circle", at("circle"));
    const std::vector<std::pair<std::string, std::string>> cases{
        {at("folder"), "it is a folder, not a file"}, {at("pipe"), "it is not a regular file"},
        {"/dev/null", "it is not a regular file"},    {at("circle"), "too many levels of symbolic links"},
        {at("pipe/file"), "not a directory"},
    };
    for (const auto& [path, message] : cases) {
        EXPECT_EQ(files.read(path, 10).error(), otherError(message)) << path;
        EXPECT_EQ(files.writeAtomically(path, "new").error(), otherError(message)) << path;
    }
    EXPECT_THAT(names(), UnorderedElementsAre("folder", "pipe", "circle"));
}

TEST_F(PosixFileSystemTest, readsUpToTheGivenSizeAndSaysWhyNot) {
    writeFile(at("file"), std::string("ab\0cd", 5));
    EXPECT_EQ(files.read(at("file"), 5), std::string("ab\0cd", 5));
    EXPECT_EQ(files.read(at("file"), 4).error(),
              (FileError{.kind = FileError::Kind::tooLarge, .message = "it is larger than 4 bytes"}));
    EXPECT_EQ(files.read(at("none"), 5).error(),
              (FileError{.kind = FileError::Kind::notFound, .message = "no such file or directory"}));
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(at("file").c_str(), 0);
    EXPECT_EQ((OrdinaryUser(), files.read(at("file"), 5)).error(), otherError("permission denied"));
}

TEST_F(PosixFileSystemTest, appendsAtTheEndOfAPrivateFile) {
    const auto file = files.openForAppending(at("log"));
    ASSERT_TRUE(file);
    EXPECT_EQ(statusOf(at("log")).st_mode, S_IFREG | 0600U);
    ASSERT_TRUE((*file)->write("one\n"));
    EXPECT_EQ((*file)->offset(), 4U);
    ASSERT_TRUE(files.openForAppending(at("log")).value()->write("two\n"));
    EXPECT_EQ(readFile(at("log")), "one\ntwo\n");
    EXPECT_EQ(files.openForAppending("/dev/full").value()->write("x").error().message,
              "no space left on device");
}

TEST_F(PosixFileSystemTest, linksAreResolvedAsFarAsTheyLead) {
    fs::create_directories(at("real/deep"));
    fs::create_directory_symlink("real/deep", at("folder"));
    fs::create_symlink("../other/./file", at("real/deep/up"));
    fs::create_symlink(at("folder/up"), at("chain"));
    fs::create_symlink("circle", at("circle"));
    const std::vector<std::pair<std::string, std::string>> cases{
        {"plain", "plain"},           {"folder/file", "real/deep/file"},      {"folder/..", "real"},
        {"chain", "real/other/file"}, {"chain/more", "real/other/file/more"}, {"circle/file", "circle/file"},
    };
    for (const auto& [path, resolved] : cases) {
        EXPECT_EQ(files.resolvingLinks(at(path)), at(resolved)) << path;
    }
    EXPECT_TRUE(files.exists(at("chain")));
    EXPECT_FALSE(files.exists(at("plain")));
}

} // namespace

} // namespace karto::testing
