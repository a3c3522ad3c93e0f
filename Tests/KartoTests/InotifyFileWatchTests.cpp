#include "Karto/Platform/Linux/InotifyFileWatch.h"
#include "Support/PolledDescriptors.h"
#include "Support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

namespace karto::testing {

namespace {

struct InotifyFileWatchTest : ::testing::Test {
    InotifyFileWatchTest() { writeFile(path, "old"); }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "file";
    PolledDescriptors descriptors;
    InotifyFileWatch fileWatch{descriptors};
};

// Changes the first byte through a mapping, which alone nobody is told of.
void writeThroughMapping(const std::filesystem::path& path) {
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    void* const bytes = ::mmap(nullptr, 1, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ASSERT_NE(bytes, MAP_FAILED);
    *static_cast<char*>(bytes) = 'x';
    ::munmap(bytes, 1);
    ::close(file);
}

} // namespace

TEST_F(InotifyFileWatchTest, everyWayToWriteIsAChangeAndNewPermissionsAreNone) {
    int changes = 0;
    const auto registration = fileWatch.watch(path, [&] { ++changes; });
    const auto changesBy = [&](const std::function<void()>& act) {
        changes = 0;
        act();
        descriptors.dispatch();
        return changes;
    };
    std::ofstream stream;
    EXPECT_EQ(changesBy([&] { std::filesystem::permissions(path, std::filesystem::perms::owner_all); }), 0);
    EXPECT_EQ(changesBy([&] { stream.open(path, std::ios::app); }), 0);
    EXPECT_EQ(changesBy([&] { stream << "more" << std::flush; }), 1);
    EXPECT_EQ(changesBy([&] { writeThroughMapping(path); }), 1);
}

TEST_F(InotifyFileWatchTest, whatHappensAfterTheEndOfAWatchIsReportedToTheOthersAlone) {
    std::string reported;
    std::optional<Registration> second;
    auto first = fileWatch.watch(path, [&] {
        second.reset();
        reported += '1';
    });
    second = fileWatch.watch(path, [&] { reported += '2'; });
    writeFile(path, "new");
    descriptors.dispatch();
    EXPECT_EQ(reported, "1");

    second = fileWatch.watch(path, [&] { reported += '2'; });
    first.reset();
    writeFile(path, "newer");
    descriptors.dispatch();
    EXPECT_EQ(reported, "12");

    writeFile(path, "newest");
    second.reset();
    const auto third = fileWatch.watch(path, [&] { reported += '3'; });
    EXPECT_FALSE(descriptors.dispatch());
    EXPECT_EQ(reported, "12");
}

} // namespace karto::testing
