// Shows the program at work without a screen: a private desktop with two displays and the windows of several
// programs, where every command is carried out by real key presses. Says what it does on standard output and
// leaves a picture of every step and the check log in the folder given: showcase FOLDER.

#include "Support/Application.h"
#include "Support/KartoProcess.h"
#include "Support/KeyPresser.h"

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <span>

namespace karto::desktop {

namespace {

namespace fs = std::filesystem;

const std::vector<Output> displays{
    {.name = "Studio", .area = {.x = 0, .y = 0, .width = 1920, .height = 1080}},
    {.name = "Tower", .area = {.x = 1920, .y = 0, .width = 1080, .height = 1920}}};

constexpr Rect settingsArea{.x = 400, .y = 160, .width = 1000, .height = 680};

std::string text(const std::optional<Rect>& frame) {
    return frame ? fmt::format("{:>4} {:>4} {:>4} x {:<4}", frame->x, frame->y, frame->width, frame->height)
                 : "gone";
}

void say(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

// A gradient from top to bottom, announced in the way that compositors look for.
void paintWallpaper(const XClient& x) {
    constexpr int height = 1920;
    const xcb_pixmap_t pixmap = xcb_generate_id(x.connection());
    const xcb_gcontext_t context = xcb_generate_id(x.connection());
    xcb_create_pixmap(x.connection(), x.screen().root_depth, pixmap, x.root(), 8, height);
    xcb_create_gc(x.connection(), context, pixmap, 0, nullptr);
    for (int row = 0; row < height; ++row) {
        const auto between = [&](int top, int bottom) {
            return std::uint32_t(top + (bottom - top) * row / height);
        };
        const std::uint32_t colour =
            between(0x4C, 0x22) << 16U | between(0x7F, 0x33) << 8U | between(0x96, 0x4D);
        xcb_change_gc(x.connection(), context, XCB_GC_FOREGROUND, &colour);
        const xcb_rectangle_t line{.x = 0, .y = std::int16_t(row), .width = 8, .height = 1};
        xcb_poly_fill_rectangle(x.connection(), pixmap, context, 1, &line);
    }
    xcb_change_window_attributes(x.connection(), x.root(), XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(x.connection(), 0, x.root(), 0, 0, 0, 0);
    x.setProperty(x.root(), "_XROOTPMAP_ID", XCB_ATOM_PIXMAP, {pixmap});
}

class Showcase {
public:
    explicit Showcase(const fs::path& folder)
        : folder_(folder)
        , desktop_(displays, folder / "desktop") {
        say(fmt::format("Private desktop {}: Studio 1920 x 1080 and, to its right, Tower 1080 x 1920",
                        desktop_.environment()["DISPLAY"]));
        furnish();
        KartoProcess::writeConfiguration(desktop_, sampleConfiguration);
        karto_ = std::make_unique<KartoProcess>(desktop_);
        say(fmt::format("\n{}", karto_->waitForBanner()));
        openWindows();
    }

    // False when a command left no trace in the log.
    bool run() {
        takePicture("start");
        showOverlay();
        for (const auto& [name, key, glyph, command] : steps) {
            show(name, key, glyph, command);
        }
        showSwitcher();
        showMenu();
        showSettings("light");
        restartInTheDark();
        showSettings("dark");
        showUpdate();
        fs::copy_file(KartoProcess::logPath(desktop_), folder_ / "karto-check.log");
        say(fmt::format("\nPictures and karto-check.log are in {}", fs::absolute(folder_).string()));
        return isComplete_;
    }

private:
    struct Step {
        std::string name;
        std::string key;
        std::string glyph;
        std::string command;
    };

    inline static const std::vector<Step> steps{
        {.name = "move to zone 1", .key = "AE01", .glyph = "1", .command = "moveToZone(1)"},
        {.name = "move to zone 2", .key = "AE02", .glyph = "2", .command = "moveToZone(2)"},
        {.name = "expand", .key = "UP", .glyph = "↑", .command = "expandZone"},
        {.name = "expand again", .key = "UP", .glyph = "↑", .command = "expandZone"},
        {.name = "shrink", .key = "DOWN", .glyph = "↓", .command = "shrinkZone"},
        {.name = "shrink again", .key = "DOWN", .glyph = "↓", .command = "shrinkZone"},
        {.name = "next zone", .key = "RGHT", .glyph = "→", .command = "nextZone"},
        {.name = "next zone again", .key = "RGHT", .glyph = "→", .command = "nextZone"},
        {.name = "fill the display", .key = "AC04", .glyph = "F", .command = "fillDisplay"},
        {.name = "move to zone 5", .key = "AE05", .glyph = "5", .command = "moveToZone(5)"},
        {.name = "previous zone", .key = "LEFT", .glyph = "←", .command = "previousZone"},
        {.name = "move to zone 3", .key = "AE03", .glyph = "3", .command = "moveToZone(3)"},
        {.name = "snap a stray window", .key = "AC01", .glyph = "A", .command = "snapToZone"},
        {.name = "tidy", .key = "AD05", .glyph = "T", .command = "tidy"},
        {.name = "no such zone", .key = "AE09", .glyph = "9", .command = "moveToZone(9)"},
    };

    void furnish() {
        paintWallpaper(desktop_.x());
        desktop_.run({"xsetroot", "-cursor_name", "left_ptr"});
        desktop_.startWindowManager("openbox");
        keys_ = std::make_unique<KeyPresser>(desktop_.x());
        companions_.push_back(desktop_.start({"picom", "--backend", "xrender", "--config", "/dev/null"}));
        companions_.push_back(startPanel(desktop_, displays[1].area, 36));
        companions_.push_back(desktop_.start(
            {"trayer", "--edge",        "top",      "--align",           "right", "--widthtype",
             "pixel",  "--width",       "1920",     "--heighttype",      "pixel", "--height",
             "32",     "--tint",        "0x1d2b36", "--alpha",           "0",     "--transparent",
             "true",   "--SetDockType", "true",     "--SetPartialStrut", "true",  "--monitor",
             "0"}));
    }

    // What the desktop's menus would say of the program whose windows are called `name`.
    void install(const std::string& name, const std::string& title, const std::string& icon) {
        const fs::path entries = desktop_.home() / ".local/share/applications";
        fs::create_directories(entries);
        std::ofstream(entries / (name + ".desktop"))
            << fmt::format("[Desktop Entry]\nType=Application\nName={}\nIcon={}\nExec=true\n", title, icon);
    }

    void openTerminal(const std::string& name, const std::string& place, const std::string& colours,
                      const std::string& command) {
        const std::size_t comma = colours.find(',');
        windows_.emplace_back(desktop_, name,
                              std::vector<std::string>{"xterm",
                                                       "-name",
                                                       name,
                                                       "-class",
                                                       name,
                                                       "-title",
                                                       name,
                                                       "-fa",
                                                       "DejaVu Sans Mono",
                                                       "-fs",
                                                       "11",
                                                       "-geometry",
                                                       place,
                                                       "-bg",
                                                       colours.substr(0, comma),
                                                       "-fg",
                                                       colours.substr(comma + 1),
                                                       "-e",
                                                       "sh",
                                                       "-c",
                                                       command + "; exec sleep 1d"});
    }

    void openWindows() {
        install("configuration", "Viewer", "text-x-generic");
        install("terminal", "Terminal", "utilities-terminal");
        install("notes", "Notes", "accessories-text-editor");
        // These two never take the focus.
        companions_.push_back(desktop_.start({"xclock", "-geometry", "320x320+1400+560", "-bg", "#f3efe6"}));
        companions_.push_back(desktop_.start({"xeyes", "-geometry", "380x260+2100+1300"}));
        openTerminal("configuration", "76x24+120+420", "#22303c,#dfe7ec", "cat ~/.config/karto/config.toml");
        openTerminal("terminal", "70x20+620+180", "#fbf7ee,#3b3a36",
                     "ls -l /usr/share | head -18; uname -sr");
        windows_.push_back(Application::clientDecorated(desktop_, "notes"));
    }

    void show(const std::string& name, const std::string& key, const std::string& glyph,
              const std::string& command) {
        const XClient& x = desktop_.x();
        const xcb_window_t window = x.activeWindow();
        if (command == "snapToZone") {
            x.place(window, {.x = 1080, .y = 620, .width = 640, .height = 380});
            require("a stray window", [&] { return x.frameOf(window).value_or(Rect::null()).x == 1080; });
        }
        const auto before = x.frameOf(window);
        keys_->chord(key);
        const auto line = karto_->log().next("command " + command + ":");
        isComplete_ = isComplete_ && line;
        say(fmt::format("\nhyper + {}   {}", glyph, name));
        say(fmt::format("    log     {}", line.value_or("nothing")));
        say(fmt::format("    frame   {}   ->   {}", text(before), text(x.frameOf(window))));
        takePicture(name);
    }

    void showOverlay() {
        keys_->holdHyper();
        require("the overlay",
                [&] { return desktop_.x().unmanagedFrames("karto").size() == displays.size(); });
        say("\nhyper held   the zones of both displays");
        takePicture("overlay");
        keys_->releaseHyper();
        require("no overlay", [&] { return desktop_.x().unmanagedFrames("karto").empty(); });
    }

    void showSwitcher() {
        for (const Application& window : windows_) {
            window.activate();
            keys_->chord("AE01");
            isComplete_ = isComplete_ && karto_->log().next("command moveToZone(1):");
        }
        keys_->holdHyper();
        keys_->tap("TAB");
        const auto opened = karto_->log().next("switcher:");
        say("\nhyper + ⇥   the windows of the zone");
        say(fmt::format("    log     {}", opened.value_or("nothing")));
        takePicture("switcher");
        keys_->releaseHyper();
        const auto raised = karto_->log().next("switcher: raised");
        say("\nhyper released   the selected window comes to the front");
        say(fmt::format("    log     {}", raised.value_or("nothing")));
        takePicture("switched");
        isComplete_ = isComplete_ && opened && raised;
    }

    void showMenu() {
        const XClient& x = desktop_.x();
        require("the icon in the tray", [&] { return x.embeddedFrames("karto").size() == 1; });
        desktop_.click(x.embeddedFrames("karto").front());
        require("the menu", [&] { return x.unmanagedFrames("karto").size() == 1; });
        say("\nclick on the icon in the panel   the menu");
        takePicture("menu");
        desktop_.run({"xdotool", "key", "Escape"});
        require("no menu", [&] { return x.unmanagedFrames("karto").empty(); });
        KartoProcess again(desktop_);
        again.process().waitForExit();
        require("a window of the program",
                [&] { return x.clientOf(karto_->process().pid()) == x.activeWindow(); });
        say("\nstarted once more   the one that runs shows itself");
        takePicture("started again");
    }

    void showUpdate() {
        const ChildProcess preview = desktop_.start({KARTO_UPDATE_PREVIEW_PROGRAM, "found"});
        require("the update window", [&] {
            const auto window = desktop_.x().clientOf(preview.pid());
            return window && desktop_.x().activeWindow() == *window;
        });
        say("\nan update that was found   the window that offers it");
        takePicture("update");
    }

    // The sections that have most to show, of the window that is open.
    void showSettings(const std::string& look) {
        const XClient& x = desktop_.x();
        const auto window = x.clientOf(karto_->process().pid()).value_or(XCB_NONE);
        x.place(window, settingsArea);
        require("the settings in their place",
                [&] { return x.frameOf(window).value_or(Rect::null()).x == settingsArea.x; });
        say(fmt::format("\nthe settings, {}", look));
        keys_->tap("DOWN");
        takePicture("settings shortcuts " + look, window);
        keys_->tap("DOWN");
        keys_->tap("DOWN");
        takePicture("settings layout " + look, window);
    }

    void restartInTheDark() {
        karto_->process().signal(SIGTERM);
        karto_->process().waitForExit();
        karto_ = std::make_unique<KartoProcess>(
            desktop_, Environment{{"QT_QPA_PLATFORMTHEME", "gtk3"}, {"GTK_THEME", "Adwaita:dark"}});
        karto_->waitForBanner();
        KartoProcess again(desktop_);
        again.process().waitForExit();
        require("the settings", [&] {
            return desktop_.x().clientOf(karto_->process().pid()) == desktop_.x().activeWindow();
        });
    }

    // Of the whole desktop, or of one window.
    void takePicture(std::string name, std::optional<xcb_window_t> window = {}) {
        std::ranges::replace(name, ' ', '-');
        const std::string file = fmt::format("{:02}-{}.png", ++pictures_, name);
        // Compositors paint what is new a frame or two later.
        std::this_thread::sleep_for(150ms);
        if (window) {
            desktop_.run({"import", "-window", fmt::format("{}", *window), folder_ / file});
        } else {
            desktop_.screenshot(folder_ / file);
        }
        say("    picture " + file);
    }

    fs::path folder_;
    PrivateDesktop desktop_;
    std::unique_ptr<KeyPresser> keys_;
    std::vector<ChildProcess> companions_;
    std::vector<Application> windows_;
    std::unique_ptr<KartoProcess> karto_;
    int pictures_ = 0;
    bool isComplete_ = true;
};

} // namespace

} // namespace karto::desktop

int main(int count, char** values) {
    const std::span arguments(values, std::size_t(count));
    if (arguments.size() != 2) {
        std::fputs("showcase FOLDER\n", stderr);
        return 2;
    }
    try {
        return karto::desktop::Showcase(std::filesystem::absolute(arguments[1])).run() ? 0 : 1;
    } catch (const std::exception& failure) {
        fmt::print(stderr, "showcase: {}\n", failure.what());
        return 1;
    }
}
