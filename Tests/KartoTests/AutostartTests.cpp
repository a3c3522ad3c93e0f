#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Karto/Platform/Linux/XdgAutostart.h"
#include "Support/Restrictions.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <optional>
#include <utility>
#include <vector>

namespace karto::testing {

namespace {

using ::testing::HasSubstr;
using Status = LoginItemStatus;

std::string problem(const std::expected<void, std::string>& outcome) {
    return outcome ? "none" : outcome.error();
}

struct AutostartTest : ::testing::Test {
    AutostartTest() { writeFile(program, ""); }

    [[nodiscard]] std::filesystem::path entry() const {
        return folder.path() / "config/autostart/karto.desktop";
    }

    void writeEntry(const std::string& text) const {
        std::filesystem::create_directories(entry().parent_path());
        writeFile(entry(), text);
    }

    XdgAutostart autostart() {
        return {files,
                {.folder = entry().parent_path(),
                 .systemFolders = {folder.path() / "system"},
                 .program = program},
                [] {}};
    }

    TemporaryFolder folder;
    std::string program = folder.path() / R"(100% "my" `$HOME` \n karto)";
    PosixFileSystem files;
};

} // namespace

RC_GTEST_PROP(AutostartEntry, startsTheProgramWhateverItsPath, ()) {
    const auto name = *rc::gen::container<std::string>(rc::gen::distinctFrom('\0'));
    EXPECT_EQ(readAutostartEntry(autostartText("/" + name)), (AutostartEntry{.program = "/" + name}));
}

TEST(AutostartEntry, isWrittenAsDesktopsReadIt) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/usr/bin/karto", R"(Exec="/usr/bin/karto")"},
        {"/opt/my apps/karto", R"(Exec="/opt/my apps/karto")"},
        {"/a%b/karto", R"(Exec="/a%%b/karto")"},
        {R"(/a"b$c`d/karto)", R"(Exec="/a\\"b\\$c\\`d/karto")"},
        {R"(/a\b/karto)", R"(Exec="/a\\\\b/karto")"},
    };
    for (const auto& [path, line] : cases) {
        EXPECT_THAT(autostartText(path), HasSubstr("\n" + line + "\n"));
    }
}

TEST_F(AutostartTest, anEntryTellsWhetherTheProgramStarts) {
    const std::string start = "[Desktop Entry]\nType=Application\nExec=karto\n";
    const std::vector<std::pair<std::string, Status>> cases{
        {start, Status::enabled},
        {start + "Hidden=false\nX-GNOME-Autostart-enabled=true\n", Status::enabled},
        {start + "[Desktop Action x]\nHidden=true\n", Status::enabled},
        {"[Desktop Entry]\nExec=\"/bin/sh\" x\nExec=karto\n", Status::notFound},
        {start + "Hidden=true\n", Status::requiresApproval},
        {start + "Hidden = True\n", Status::requiresApproval},
        {"[Desktop Entry]\nHidden=true\n", Status::requiresApproval},
        {start + "X-GNOME-Autostart-enabled=false\n", Status::requiresApproval},
        {start + "X-MATE-Autostart-enabled=false\n", Status::requiresApproval},
        {start + "X-KDE-autostart-enabled=false\n", Status::requiresApproval},
        {"[Desktop Entry]\nExec=/nowhere/karto --quiet\n", Status::notFound},
        {"[Desktop Entry]\nExec=editor karto\n", Status::notFound},
        {"", Status::notFound},
    };
    EXPECT_EQ(autostart().status(), Status::notRegistered);
    for (const auto& [text, status] : cases) {
        writeEntry(text);
        EXPECT_EQ(autostart().status(), status) << text;
    }
}

TEST_F(AutostartTest, isSwitchedOnAndOff) {
    EXPECT_TRUE(autostart().unregisterItem());
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(autostart().registerItem());
        EXPECT_EQ(autostart().status(), Status::enabled);
        EXPECT_EQ(readAutostartEntry(readFile(entry())).program, program);
    }
    EXPECT_TRUE(autostart().unregisterItem());
    EXPECT_FALSE(std::filesystem::exists(entry()));
    writeEntry("[Desktop Entry]\nExec=/moved/away/karto\n");
    EXPECT_TRUE(autostart().registerItem());
    EXPECT_EQ(autostart().status(), Status::enabled);
}

TEST_F(AutostartTest, whatAPersonHasWrittenOrSwitchedOffIsLeftAlone) {
    for (const std::string text :
         {"[Desktop Entry]\nExec=editor\n", "[Desktop Entry]\nExec=karto\nHidden=true\n"}) {
        writeEntry(text);
        EXPECT_THAT(problem(autostart().registerItem()), HasSubstr(entry().string()));
        EXPECT_EQ(readFile(entry()), text);
    }
    writeEntry("[Desktop Entry]\nExec=editor\n");
    EXPECT_THAT(problem(autostart().unregisterItem()), HasSubstr("another program"));
}

TEST_F(AutostartTest, theSystemsEntryCountsAndCannotBeSwitchedOff) {
    std::filesystem::create_directory(folder.path() / "system");
    writeFile(folder.path() / "system/karto.desktop", autostartText(program));
    EXPECT_EQ(autostart().status(), Status::enabled);
    EXPECT_THAT(problem(autostart().unregisterItem()), HasSubstr("system/karto.desktop"));
    writeEntry("[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(autostart().status(), Status::requiresApproval);
}

TEST_F(AutostartTest, aFailureHasTheSystemsWords) {
    ASSERT_TRUE(autostart().registerItem());
    std::filesystem::permissions(folder.path(), std::filesystem::perms::others_exec,
                                 std::filesystem::perm_options::add);
    const OrdinaryUser user;
    EXPECT_THAT(problem(autostart().registerItem()), HasSubstr("permission denied"));
    EXPECT_THAT(problem(autostart().unregisterItem()), HasSubstr("permission denied"));
}

TEST_F(AutostartTest, anEntryThatCannotBeReadIsLeftAlone) {
    std::filesystem::create_directories(entry());
    EXPECT_THAT(problem(autostart().registerItem()), HasSubstr(entry().string()));
    EXPECT_THAT(problem(autostart().unregisterItem()), HasSubstr(entry().string()));
    EXPECT_TRUE(std::filesystem::is_directory(entry()));
}

} // namespace karto::testing
