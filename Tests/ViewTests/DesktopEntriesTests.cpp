#include "Karto/Platform/Linux/DesktopEntries.h"

#include "Karto/Drawing/QtImages.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>

namespace karto::testing {

namespace {

namespace fs = std::filesystem;

class DesktopEntriesTest : public ::testing::Test {
protected:
    DesktopEntriesTest() { fs::create_directories(installed / "vendor"); }

    void add(const fs::path& file, const std::string& keys) const {
        writeFile(file, "# comment\n[Desktop Entry]\nType=Application\n" + keys +
                            "\n[Desktop Action new]\nName=New Window\n");
        fs::last_write_time(file.parent_path(),
                            fs::last_write_time(file.parent_path()) + std::chrono::seconds(1));
    }

    [[nodiscard]] DesktopEntries entries(const std::string& locale = "C") const {
        return DesktopEntries({.folders = {own, installed}, .locale = locale});
    }

    TemporaryFolder folder;
    // Does not exist at first.
    fs::path own = folder.path() / "home";
    fs::path installed = folder.path() / "usr";
};

TEST_F(DesktopEntriesTest, applicationsAreFoundByWhatTheirWindowsSay) {
    add(installed / "firefox.desktop", "Name=Firefox\nName[de]=Feuerfuchs\nName[de_AT]=Feuerfuchserl");
    add(installed / "org.example.Files.desktop", R"(Name = Files\sand\\Folders)");
    add(installed / "gimp.desktop", "Name=Image Editor\nStartupWMClass=Gimp-2.10");
    add(installed / "gimp-hidden.desktop", "Name=Helper\nStartupWMClass=Gimp-2.10\nNoDisplay=true");
    add(installed / "agent.desktop", "Name=Agent\nNoDisplay=true");
    add(installed / "vendor/tool.desktop", "Name=Tool");
    add(installed / "gone.desktop", "Name=Gone\nHidden=true");
    add(installed / "nameless.desktop", "Icon=x");
    writeFile(installed / "link.desktop", "[Desktop Entry]\nType=Link\nName=Link\n");
    writeFile(installed / "broken.desktop", std::string("\0[\xFF=\n==\n[Desktop Entry", 22));

    auto found = entries();
    using Row = std::pair<std::string, std::optional<std::string>>;
    for (const auto& [identity, name] : std::vector<Row>{{"firefox", "Firefox"},
                                                         {"Firefox", "Firefox"},
                                                         {"org.example.Files", R"(Files and\Folders)"},
                                                         {"files", R"(Files and\Folders)"},
                                                         {"gimp-2.10", "Image Editor"},
                                                         {"Agent", "Agent"},
                                                         {"vendor-tool", "Tool"},
                                                         {"gone", {}},
                                                         {"nameless", {}},
                                                         {"link", {}},
                                                         {"broken", {}},
                                                         {"", {}}}) {
        EXPECT_EQ(found.name(identity), name) << identity;
    }
    EXPECT_EQ(entries("de_AT.UTF-8").name("firefox"), "Feuerfuchserl");
    EXPECT_EQ(entries("de_CH@euro").name("firefox"), "Feuerfuchs");
}

TEST_F(DesktopEntriesTest, changesAreSeenAndAPersonsOwnEntriesComeFirst) {
    add(installed / "editor.desktop", "Name=Editor");
    auto found = entries();
    EXPECT_EQ(found.name("editor"), "Editor");
    fs::create_directory(own);
    add(own / "editor.desktop", "Name=My Editor");
    EXPECT_EQ(found.name("editor"), "My Editor");
    add(own / "editor.desktop", "Name=My Editor\nHidden=true");
    EXPECT_EQ(found.name("editor"), std::nullopt);
    EXPECT_EQ(found.name("late"), std::nullopt);
    add(installed / "vendor/late.desktop", "Name=Late");
    EXPECT_EQ(found.name("vendor-late"), "Late");
}

TEST_F(DesktopEntriesTest, iconsAreReadFromTheirFilesOnce) {
    QImage picture = drawing::canvas({128, 128});
    picture.fill(Qt::red);
    const auto file = folder.path() / "icon.png";
    ASSERT_TRUE(picture.save(QString::fromStdString(file.native())));
    fs::create_directory(folder.path() / "pixmaps");
    fs::copy_file(file, folder.path() / "pixmaps/tool.png");
    add(installed / "editor.desktop", "Name=Editor\nIcon=" + file.native());
    add(installed / "tool.desktop", "Name=Tool\nIcon=tool.xpm");
    add(installed / "plain.desktop", "Name=Plain\nIcon=no-such-icon");
    auto found = entries();
    const auto icon = found.icon("editor");
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->width, 64);
    EXPECT_EQ(icon->pixels.front(), 0xFFFF0000);
    EXPECT_EQ(found.icon("Editor"), icon);
    EXPECT_TRUE(found.icon("tool"));
    EXPECT_FALSE(found.icon("plain"));
    EXPECT_FALSE(found.icon("missing"));
}

} // namespace

} // namespace karto::testing
