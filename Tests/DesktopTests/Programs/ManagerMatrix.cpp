// Window managers of the distribution against windows of every kind and applications that people use. Where a
// window ends up is seen from outside and held against what is free of the display to the eye. At the end
// there is a table; what it calls off has to be a limit that people are told of.

#include "DesktopTest.h"
#include "Support/WindowKinds.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <utility>

namespace karto::desktop {

namespace {

const std::vector<std::string> managers{"openbox", "xfwm4",    "metacity", "mutter", "kwin_x11",
                                        "icewm",   "blackbox", "awesome",  "jwm",    "marco",
                                        "muffin",  "fvwm3",    "wmaker"};

const std::set<std::pair<std::string, std::string>> knownLimits{
    {"awesome", "maximized"},
    // Kept on the display with their shadows.
    {"icewm", "shadowed"},
    {"icewm", "chromium"},
    {"icewm", "tidy"},
    // Of several windows that have just opened not every one becomes active when it is asked to.
    {"blackbox", "tidy"},
    {"jwm", "shadowed"},
    {"marco", "shadowed"},
    {"marco", "GTK 4"},
    {"marco", "tidy"},
    // It shrinks to its steps by itself, and the manager keeps its lower edge.
    {"jwm", "VTE"},
    // One pixel off: the manager forgets its border for windows with static gravity.
    {"wmaker", "chromium"},
    {"wmaker", "Qt"},
    {"wmaker", "tidy"},
    // It goes back to its old height now and then when it changes displays.
    {"mutter", "GTK 4"},
    {"muffin", "GTK 4"},
    // It is a window like any other, and the work area is that of larger displays.
    {"fvwm3", "panel"},
    // Full-screen by the manager's own decision once it fills a display.
    {"metacity", "borderless"},
    {"mutter", "borderless"},
    {"marco", "borderless"},
    {"muffin", "borderless"},
};

// In order: the worst of a window's verdicts is the window's own.
enum class Verdict : std::uint8_t { exact, steps, itsOwnSize, off };

std::string nameOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::exact: return "exact";
    case Verdict::steps: return "steps";
    case Verdict::itsOwnSize: return "own size";
    case Verdict::off: return "OFF";
    }
    return "";
}

struct Subject {
    std::string name;
    std::function<Application(PrivateDesktop&)> open;
    // Before every command, or once, before the last one.
    bool isMaximizedAlways = false;
    bool isMaximizedOnce = false;
    // One that is larger than some zones would be pushed about by managers.
    bool fitsEverywhere = true;
};

struct Move {
    std::string key;
    std::string command;
    Rect wanted;
};

Subject application(const std::string& name, const std::string& instance,
                    const std::vector<std::string>& arguments) {
    return {.name = name,
            .open = [=](PrivateDesktop& desktop) { return Application(desktop, instance, arguments); },
            .isMaximizedOnce = true};
}

// Without its help and the tip of the day, which would come in front of it.
Application javaEditor(PrivateDesktop& desktop) {
    const auto settings = desktop.home() / "jedit";
    std::filesystem::create_directories(settings);
    std::ofstream(settings / "properties") << "tip.show=false\nfirstTime=false\n";
    return {desktop,
            "org-gjt-sp-jedit-jEdit",
            {"jedit", "-settings=" + settings.string(), "-noserver", "-nosplash"}};
}

std::vector<Subject> applications() {
    return {
        application("chromium", "chromium",
                    {"chromium", "--no-sandbox", "--no-first-run", "--disable-gpu", "--password-store=basic",
                     "about:blank"}),
        application("GTK 3", "mousepad", {"mousepad", "--disable-server"}),
        application("GTK 4", "gnome-text-editor", {"env", "GSK_RENDERER=cairo", "gnome-text-editor"}),
        application("Qt", "featherpad", {"featherpad"}),
        application("VTE", "xfce4-terminal", {"xfce4-terminal", "--disable-server"}),
        {.name = "Java", .open = javaEditor, .isMaximizedOnce = true},
    };
}

std::vector<Subject> subjects() {
    std::vector<Subject> result;
    result.reserve(windowKinds.size());
    for (const WindowKind& kind : windowKinds) {
        result.push_back({.name = kind.name,
                          .open = [kind](PrivateDesktop& desktop) { return kind.open(desktop); },
                          .isMaximizedAlways = kind.name == "maximized",
                          .fitsEverywhere = kind.size == WindowKind::Size::exact ||
                                            kind.size == WindowKind::Size::upToOneStepShort});
    }
    result.push_back({.name = "shadowed", .open = [](PrivateDesktop& desktop) {
                          return Application::probe(desktop, "shadowed", "shadowed", somewhere);
                      }});
    std::ranges::copy(applications(), std::back_inserter(result));
    return result;
}

// What a window says of the sizes it takes.
struct SizeHints {
    double widthStep = 0;
    double heightStep = 0;
    bool hasLimits = false;
};

SizeHints hintsOf(const XClient& x, xcb_window_t window) {
    const auto words = x.property(window, "WM_NORMAL_HINTS");
    constexpr std::size_t widthStep = 9;
    constexpr std::size_t heightStep = 10;
    if (words.size() <= heightStep) {
        return {};
    }
    constexpr std::uint32_t limits = 0x30;
    constexpr std::uint32_t steps = 0x40;
    const bool hasSteps = (words[0] & steps) != 0;
    return {.widthStep = hasSteps ? double(words[widthStep]) : 0,
            .heightStep = hasSteps ? double(words[heightStep]) : 0,
            .hasLimits = (words[0] & limits) != 0};
}

Verdict judgeLength(double is, double wanted, double step, bool isItsOwn) {
    if (std::abs(is - wanted) < 1) {
        return Verdict::exact;
    }
    if (is < wanted && is > wanted - step) {
        return Verdict::steps;
    }
    return isItsOwn ? Verdict::itsOwnSize : Verdict::off;
}

// Edges may be rounded to whole pixels either way. `first` is the frame that the window gave itself.
Verdict judge(const Rect& is, const Rect& wanted, const SizeHints& hints, const Rect& first) {
    if (fits(is, wanted)) {
        return Verdict::exact;
    }
    if (std::abs(is.x - wanted.x) >= 1 || std::abs(is.y - wanted.y) >= 1) {
        return Verdict::off;
    }
    return std::max(
        judgeLength(is.width, wanted.width, hints.widthStep, hints.hasLimits && is.width == first.width),
        judgeLength(is.height, wanted.height, hints.heightStep,
                    hints.hasLimits && is.height == first.height));
}

std::string written(const Rect& rect) {
    return fmt::format("({}, {}, {}, {})", rect.x, rect.y, rect.width, rect.height);
}

} // namespace

class ManagerMatrix : public ManagerTest {
protected:
    static void TearDownTestSuite() {
        constexpr int width = 17;
        std::string line(width, ' ');
        for (const std::string& manager : tried) {
            line += fmt::format("{:9}", manager);
        }
        for (const auto& [subject, verdicts] : table) {
            line += fmt::format("\n{:{}}", subject, width);
            for (const std::string& manager : tried) {
                const auto verdict = verdicts.find(manager);
                line += fmt::format("{:9}", verdict == verdicts.end() ? "" : nameOf(verdict->second));
            }
        }
        fmt::print("{}\n", line);
    }

    // Something thick enough for a panel that lies in the middle of the display's edge.
    [[nodiscard]] std::optional<Rect> panelAt(Point edge) const {
        constexpr double thinnest = 8;
        constexpr double thickest = 150;
        const auto found = desktop.x().outermostAt(edge);
        const double thickness = found ? std::min(found->width, found->height) : 0;
        return thickness >= thinnest && thickness <= thickest ? found : std::nullopt;
    }

    static bool isKnownLimit(const std::string& subject) {
        return knownLimits.contains({GetParam(), subject});
    }

    // With the program, and every panel of the manager in its place.
    void startAll() {
        startKarto();
        if (isKnownLimit("panel")) {
            freeStudio = zone::studio;
            freeTower = zone::tower;
            return;
        }
        const auto look = [this] {
            const auto before = std::pair(freeStudio, freeTower);
            freeStudio = freeOf(zone::studio);
            freeTower = freeOf(zone::tower);
            return before != std::pair(freeStudio, freeTower);
        };
        look();
        while (eventually(look, 1s)) {}
    }

    // What the manager's panels leave of what is free without them, as a person sees it.
    [[nodiscard]] Rect freeOf(const Rect& display) const {
        // Managers keep thin invisible windows at the very edge.
        constexpr double inward = 3;
        const Point middle = display.center();
        double left = display.x;
        double top = display.y;
        double right = display.maxX();
        double bottom = display.maxY();
        if (const auto found = panelAt({.x = left + inward, .y = middle.y})) {
            left = found->maxX();
        }
        if (const auto found = panelAt({.x = middle.x, .y = top + inward})) {
            top = found->maxY();
        }
        if (const auto found = panelAt({.x = right - inward, .y = middle.y})) {
            right = found->x;
        }
        if (const auto found = panelAt({.x = middle.x, .y = bottom - inward})) {
            bottom = found->y;
        }
        return {.x = left, .y = top, .width = right - left, .height = bottom - top};
    }

    // Over all zones, and twice over a whole display.
    static std::vector<Move> journey(const Rect& studio, const Rect& tower) {
        const auto move = [](int number, const Rect& display, const NormRect& part) {
            return Move{.key = fmt::format("AE0{}", number),
                        .command = fmt::format("moveToZone({})", number),
                        .wanted = part.pixelRect(display)};
        };
        const auto fill = [](const Rect& display) {
            return Move{.key = "AC04", .command = "fillDisplay", .wanted = display};
        };
        return {move(1, studio, {.x = 0, .y = 0, .w = 0.5, .h = 1}),
                move(3, studio, {.x = 0.5, .y = 0.5, .w = 0.5, .h = 0.5}),
                move(4, tower, {.x = 0, .y = 0.5, .w = 1, .h = 0.5}),
                fill(tower),
                move(5, tower, {.x = 0, .y = 0, .w = 1, .h = 0.5}),
                move(2, studio, {.x = 0.5, .y = 0, .w = 0.5, .h = 0.5}),
                fill(studio),
                move(3, studio, {.x = 0.5, .y = 0.5, .w = 0.5, .h = 0.5})};
    }

    // Once it changes no more: some windows answer late, and some shrink to their steps later still.
    static Rect restingFrame(const Application& window) {
        Rect frame = window.frame();
        while (eventually([&] { return window.frame() != frame; }, 120ms)) {
            frame = window.frame();
        }
        return frame;
    }

    void maximize(const Application& window) {
        desktop.x().maximize(window.window());
        const bool isMaximized = eventually(
            [&] { return desktop.x().hasState(window.window(), "_NET_WM_STATE_MAXIMIZED_VERT"); }, 3s);
        EXPECT_TRUE(isMaximized) << window.name() << " was not maximized";
        restingFrame(window);
    }

    // The frame at the end goes to `is`.
    Verdict carryOut(const Move& move, const Application& window, const SizeHints& hints, const Rect& first,
                     Rect& is) {
        // Some open further windows once they have started.
        if (desktop.x().activeWindow() != window.window()) {
            window.activate();
        }
        karto->log().rest();
        keys.chord(move.key);
        eventually([&] { return judge(window.frame(), move.wanted, hints, first) != Verdict::off; }, 2s);
        is = restingFrame(window);
        return judge(is, move.wanted, hints, first);
    }

    Verdict tryOut(const Subject& subject) {
        const Application window = subject.open(desktop);
        const Rect first = restingFrame(window);
        const SizeHints hints = hintsOf(desktop.x(), window.window());
        auto moves = journey(freeStudio, freeTower);
        if (!subject.fitsEverywhere) {
            moves.resize(1);
        }
        if (subject.isMaximizedAlways) {
            // Some managers maximize on another display.
            std::erase_if(moves, [](const Move& move) { return move.command == "fillDisplay"; });
        }
        Verdict worst = Verdict::exact;
        for (std::size_t i = 0; i < moves.size(); ++i) {
            const bool isLast = i + 1 == moves.size();
            const bool canBeMaximized = !isKnownLimit("maximized");
            if (subject.isMaximizedAlways || (subject.isMaximizedOnce && isLast && canBeMaximized)) {
                maximize(window);
            }
            Rect is;
            const Verdict verdict = carryOut(moves[i], window, hints, first, is);
            worst = std::max(worst, verdict);
            if (verdict == Verdict::off) {
                fmt::print("{}, {}, {} {}: at {} instead of {}; the log says: {}\n", GetParam(), subject.name,
                           i + 1, moves[i].command, written(is), written(moves[i].wanted),
                           karto->log().rest());
            }
        }
        return worst;
    }

    void record(const std::string& subject, Verdict verdict) {
        if (std::ranges::find(tried, GetParam()) == tried.end()) {
            tried.push_back(GetParam());
        }
        EXPECT_TRUE(verdict != Verdict::off || isKnownLimit(subject)) << subject << " is off";
        if (verdict != Verdict::off && isKnownLimit(subject)) {
            fmt::print("{}, {}: a known limit was not met this time\n", GetParam(), subject);
        }
        const auto row = std::ranges::find(table, subject, [](const auto& entry) { return entry.first; });
        auto& verdicts = row == table.end() ? table.emplace_back(subject, Row()).second : row->second;
        verdicts[GetParam()] = verdict;
    }

    Rect freeStudio;
    Rect freeTower;

private:
    using Row = std::map<std::string, Verdict>;
    // The columns and the rows, as they came.
    static inline std::vector<std::string> tried;
    static inline std::vector<std::pair<std::string, Row>> table;
};

INSTANTIATE_TEST_SUITE_P(On, ManagerMatrix, ::testing::ValuesIn(managers), managerName);

TEST_P(ManagerMatrix, everyWindowTakesEveryZone) {
    startAll();
    fmt::print("{}: free are {} and {}\n", GetParam(), written(freeStudio), written(freeTower));
    for (const Subject& subject : subjects()) {
        Verdict verdict = Verdict::off;
        try {
            verdict = tryOut(subject);
        } catch (const std::exception& failure) {
            fmt::print("{}, {}: {}\n", GetParam(), subject.name, failure.what());
        }
        record(subject.name, verdict);
    }
}

TEST_P(ManagerMatrix, hyperMayBePressedInAnyOrder) {
    startAll();
    const Application window = Application::probe(desktop, "plain", "window", somewhere);
    const auto moves = journey(freeStudio, freeTower);
    // The first key of another keyboard has managers claim their own keys anew.
    keys.tap("LFSH");
    require("the manager", [&] { return desktop.x().managerAnswers(patience); });
    keys.hyper = {"LFSH", "LCTL", "LALT", "LWIN"};
    pressUntilFits(moves[1].key, window, moves[1].wanted);
    Verdict worst = Verdict::exact;
    for (std::size_t i = 0; i < keys.hyper.size(); ++i) {
        std::ranges::rotate(keys.hyper, keys.hyper.begin() + 1);
        Rect is;
        const Verdict verdict = carryOut(moves[i % 2], window, {}, {}, is);
        worst = std::max(worst, verdict);
        if (verdict == Verdict::off) {
            fmt::print("{}: nothing with {}\n", GetParam(), fmt::join(keys.hyper, " "));
        }
    }
    record("order of keys", worst);
}

TEST_P(ManagerMatrix, applicationsShareATidyDesktop) {
    startAll();
    const auto moves = journey(freeStudio, freeTower);
    std::vector<Application> windows;
    for (const Subject& subject : applications()) {
        windows.push_back(subject.open(desktop));
    }
    Verdict worst = Verdict::off;
    const auto tidyUp = [&] {
        worst = Verdict::exact;
        for (const std::size_t i : {2U, 4U}) {
            Rect is;
            const SizeHints hints = hintsOf(desktop.x(), windows[i].window());
            worst = std::max(worst, carryOut(moves[i], windows[i], hints, {}, is));
        }
        windows[0].activate();
        press("AD05", "tidy");
        for (const std::size_t i : {0U, 1U, 3U, 5U}) {
            const SizeHints hints = hintsOf(desktop.x(), windows[i].window());
            const Rect is = restingFrame(windows[i]);
            const auto judgeIn = [&](std::size_t zone) { return judge(is, moves[zone].wanted, hints, {}); };
            worst = std::max(worst, std::min({judgeIn(0), judgeIn(1), judgeIn(5)}));
        }
        return worst != Verdict::off;
    };
    // Some come to the front once more when they have started at last.
    try {
        eventually(tidyUp, 10s);
    } catch (const std::exception& failure) {
        fmt::print("{}, tidy: {}\n", GetParam(), failure.what());
        worst = Verdict::off;
    }
    takePicture("tidy");
    record("tidy", worst);
}

} // namespace karto::desktop
