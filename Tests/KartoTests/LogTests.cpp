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

    TemporaryFolder folder_;
    fs::path path_ = folder_.path() / "Karto" / "karto-check.log";
    fs::path oldPath_ = path_.native() + ".old";
    PosixFileSystem files_;
    FixedClock clock_{std::chrono::sys_days{std::chrono::March / 9 / 2025} +
                      std::chrono::milliseconds{50'731'999}};
    std::vector<std::string> problems_;
    FileCheckLog log_{path_, files_, clock_,
                      [this](std::string_view problem) { problems_.emplace_back(problem); }};
};

} // namespace

TEST_F(FileCheckLogTest, beginsAPrivateFileAndGoesOnInIt) {
    log_.append("startup: ⌘ first");
    EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    FileCheckLog(path_, files_, clock_, [](std::string_view) {}).append("startup: second");
    log_.append("startup: third");
    EXPECT_EQ(readFile(path_), line("startup: ⌘ first") + line("startup: second") + line("startup: third"));
}

TEST_F(FileCheckLogTest, aFullLogBecomesTheOneOldLog) {
    fs::create_directories(path_.parent_path());
    writeFile(oldPath_, "ancient");
    const std::string full(FileCheckLog::maximumBytes, 'x');
    writeFile(path_, full);
    log_.append("a");
    EXPECT_EQ(readFile(path_), full + line("a"));
    EXPECT_EQ(readFile(oldPath_), "ancient");
    log_.append("b");
    EXPECT_EQ(readFile(path_), line("b"));
    EXPECT_EQ(readFile(oldPath_), full + line("a"));
}

TEST_F(FileCheckLogTest, saysOnceThatLinesAreLostUntilOneIsWritten) {
    const auto folder = path_.parent_path();
    // So long that the next line begins a new file.
    const std::string full(FileCheckLog::maximumBytes, 'x');
    for (int round = 0; round < 2; ++round) {
        fs::remove_all(folder);
        writeFile(folder, "in the way");
        log_.append("lost");
        log_.append("lost");
        fs::remove(folder);
        log_.append(full);
        EXPECT_EQ(readFile(path_), line(full));
    }
    EXPECT_THAT(problems_, ElementsAre(HasSubstr(path_.native()), HasSubstr(path_.native())));
}

TEST_F(FileCheckLogTest, aFailedWriteIsAProblemToo) {
    FileCheckLog full("/dev/full", files_, clock_,
                      [this](std::string_view problem) { problems_.emplace_back(problem); });
    full.append("lost");
    full.append("lost");
    EXPECT_EQ(problems_.size(), 1U);
}

} // namespace karto::testing
