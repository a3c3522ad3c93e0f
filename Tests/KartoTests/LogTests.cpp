#include "Karto/Log.h"

#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Support/FixedClock.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class FileCheckLogTest : public ::testing::Test {
protected:
    std::string line(std::string_view text) { return "[2025-03-09T14:05:31Z] " + std::string(text) + "\n"; }

    TemporaryFolder folder;
    fs::path path = folder.path() / "Karto" / "karto-check.log";
    fs::path oldPath = path.native() + ".old";
    PosixFileSystem files;
    FixedClock clock{std::chrono::sys_days{std::chrono::March / 9 / 2025} +
                     std::chrono::milliseconds{50'731'999}};
    std::vector<std::string> problems;
    FileCheckLog log{path, files, clock,
                     [this](std::string_view problem) { problems.emplace_back(problem); }};
};

} // namespace

TEST_F(FileCheckLogTest, beginsAPrivateFileAndGoesOnInIt) {
    log.append("startup: ⌘ first");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    FileCheckLog(path, files, clock, [](std::string_view) {}).append("startup: second");
    log.append("startup: third");
    EXPECT_EQ(readFile(path), line("startup: ⌘ first") + line("startup: second") + line("startup: third"));
}

TEST_F(FileCheckLogTest, aFullLogBecomesTheOneOldLog) {
    fs::create_directories(path.parent_path());
    writeFile(oldPath, "ancient");
    const std::string full(FileCheckLog::maximumBytes, 'x');
    writeFile(path, full);
    log.append("a");
    EXPECT_EQ(readFile(path), full + line("a"));
    EXPECT_EQ(readFile(oldPath), "ancient");
    log.append("b");
    EXPECT_EQ(readFile(path), line("b"));
    EXPECT_EQ(readFile(oldPath), full + line("a"));
}

TEST_F(FileCheckLogTest, saysOnceThatLinesAreLostUntilOneIsWritten) {
    const auto logFolder = path.parent_path();
    // So long that the next line begins a new file.
    const std::string full(FileCheckLog::maximumBytes, 'x');
    for (int round = 0; round < 2; ++round) {
        fs::remove_all(logFolder);
        writeFile(logFolder, "in the way");
        log.append("lost");
        log.append("lost");
        fs::remove(logFolder);
        log.append(full);
        EXPECT_EQ(readFile(path), line(full));
    }
    EXPECT_THAT(problems, ElementsAre(HasSubstr(path.native()), HasSubstr(path.native())));
}

} // namespace karto::testing
