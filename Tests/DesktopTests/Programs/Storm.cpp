#include "Storm.h"

#include "Support/SampleZones.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <csignal>

namespace karto::desktop {

namespace {

constexpr std::size_t mostWindows = 8;
constexpr std::size_t mostRemembered = 20;

const std::vector<std::string> fourModifiers{"LFSH", "LWIN", "LCTL", "LALT"};
const std::vector<std::string> threeModifiers{"LWIN", "LCTL", "LALT"};

struct Edit {
    std::string text;
    // The hyper keys from then on; none where the text is refused.
    std::vector<std::string> hyper;
};

const std::vector<Edit> edits{
    {.text = sampleConfiguration, .hyper = fourModifiers},
    {.text = sampleConfiguration + "[overlay]\ndelay = 0.0\nnumberSize = 240.0\n", .hyper = fourModifiers},
    {.text = sampleConfiguration + "[hotkeys]\nmodifiers = [\"control\", \"option\", \"command\"]\n",
     .hyper = threeModifiers},
    {.text = "[profile]\nname = \"One\"\n[[display]]\nname = \"Studio\"\norientation = \"landscape\"\n",
     .hyper = fourModifiers},
    {.text = "[profile\n", .hyper = {}},
    {.text = "", .hyper = {}},
};

} // namespace

const std::vector<Storm::Act> Storm::acts{
    {.name = "commands", .weight = 40, .run = &Storm::giveCommand},
    {.name = "overlays", .weight = 8, .run = &Storm::showOverlay},
    {.name = "switcher sessions", .weight = 8, .run = &Storm::switchWindows},
    {.name = "windows opened", .weight = 8, .run = &Storm::openWindow},
    {.name = "windows closed or killed", .weight = 6, .run = &Storm::endWindow},
    {.name = "windows changed", .weight = 12, .run = &Storm::changeWindow},
    {.name = "applications stopped", .weight = 2, .run = &Storm::stopApplication},
    {.name = "edits of the configuration", .weight = 5, .run = &Storm::editConfiguration},
    {.name = "changes of displays", .weight = 3, .run = &Storm::changeDisplays, .isOfSettings = true},
    {.name = "changes of the keyboard", .weight = 2, .run = &Storm::changeKeyboard},
    {.name = "grabs of the server", .weight = 1, .run = &Storm::grabServer},
    {.name = "window managers restarted", .weight = 1, .run = &Storm::restartManager},
    {.name = "compositors restarted", .weight = 1, .run = &Storm::restartCompositor},
    {.name = "panels come or gone", .weight = 2, .run = &Storm::togglePanel},
    {.name = "settings opened", .weight = 3, .run = &Storm::openSettings, .isOfSettings = true},
    {.name = "settings used", .weight = 30, .run = &Storm::useSettings, .isOfSettings = true},
    {.name = "zones edited on the screen", .weight = 12, .run = &Storm::editOnScreen, .isOfSettings = true},
    {.name = "settings closed", .weight = 2, .run = &Storm::closeSettings, .isOfSettings = true},
};

Storm::Storm(PrivateDesktop& desktop, std::uint32_t seed, bool isComposited, Place place)
    : desktop_(desktop)
    , random_(seed)
    , keys_(desktop.x())
    , mouse_(desktop.x())
    , isComposited_(isComposited)
    , place_(place) {
    desktop_.startWindowManager("openbox");
    restartCompositor();
    calm();
}

void Storm::act() {
    std::vector<double> weights;
    std::ranges::transform(acts, std::back_inserter(weights), [this](const Act& each) {
        return place_ == Place::everywhere || each.isOfSettings ? each.weight : 0;
    });
    const Act& act = acts[std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(random_)];
    ++counts_[act.name];
    latest_.push_back(act.name);
    if (latest_.size() > mostRemembered) {
        latest_.erase(latest_.begin());
    }
    (this->*act.run)();
    if (oneIn(4)) {
        hesitate(40ms);
    }
}

void Storm::calm() {
    const XClient& x = desktop_.x();
    // What the settings still have to write comes before the sample.
    require("the settings to close", [&] {
        closeSettings();
        return eventually([this] { return ownWindows().empty(); }, 500ms);
    });
    keys_.hyper = fourModifiers;
    KartoProcess::writeConfiguration(desktop_, sampleConfiguration);
    desktop_.run({"setxkbmap", "us"});
    keys_.setLocks(false);
    while (!isTowerConnected_ || isStudioTurned_ || isTowerRenamed_) {
        changeDisplays();
    }
    windows_.clear();
    // One that is there may have been dragged away.
    panel_.reset();
    togglePanel();
    require("the windows to go", [&] { return x.property(x.root(), "_NET_CLIENT_LIST").size() <= 1; });
}

void Storm::openSettingsAlone() {
    require("the settings alone", [&] {
        const auto count = ownWindows().size();
        if (count > 1) {
            closeSettings();
        } else if (count == 0) {
            openSettings();
        }
        return eventually([this] { return ownWindows().size() == 1; }, 500ms);
    });
    mouse_.move({.x = 1, .y = 1});
    desktop_.x().settle();
}

void Storm::giveCommand() {
    constexpr std::array keys{"AE01", "AE02", "AE03", "AE04", "AE05", "AE09", "LEFT",
                              "RGHT", "UP",   "DOWN", "AC01", "AC04", "AD05"};
    keys_.chord(oneOf(keys));
}

void Storm::showOverlay() {
    keys_.holdHyper();
    hesitate(700ms);
    if (oneIn(4)) {
        giveCommand();
    }
    keys_.releaseHyper();
}

void Storm::switchWindows() {
    keys_.holdHyper();
    for (int taps = 1 + below(5); taps > 0; --taps) {
        keys_.tap("TAB");
    }
    hesitate(100ms);
    if (oneIn(3)) {
        keys_.tap("ESC");
    } else if (oneIn(3)) {
        endWindow();
    }
    keys_.releaseHyper();
}

void Storm::openWindow() {
    constexpr std::array kinds{"plain", "plain",      "stepped", "minimum",
                               "fixed", "borderless", "dialog",  "vanishing"};
    std::erase_if(windows_, [](Application& window) { return !window.process().isAlive(); });
    if (windows_.size() == mostWindows) {
        windows_.pop_front();
    }
    const std::string name = fmt::format("window-{}", ++opened_);
    windows_.push_back(oneIn(8) ? Application::terminal(desktop_, name)
                                : Application::probe(desktop_, oneOf(kinds), name, someArea()));
}

void Storm::endWindow() {
    if (windows_.empty()) {
        return;
    }
    const auto window = std::next(windows_.begin(), below(int(windows_.size())));
    if (oneIn(2)) {
        desktop_.x().close(window->window());
    } else {
        windows_.erase(window);
    }
}

void Storm::changeWindow() {
    if (windows_.empty()) {
        return;
    }
    const XClient& x = desktop_.x();
    const xcb_window_t window = std::next(windows_.begin(), below(int(windows_.size())))->window();
    switch (below(6)) {
    case 0: x.maximize(window); break;
    case 1: x.makeFullScreen(window); break;
    case 2: x.lower(window); break;
    case 3: x.place(window, someArea()); break;
    default: x.activate(window);
    }
}

void Storm::stopApplication() {
    if (windows_.empty()) {
        return;
    }
    const ChildProcess& program = windows_.back().process();
    program.signal(SIGSTOP);
    giveCommand();
    hesitate(200ms);
    program.signal(SIGCONT);
}

void Storm::editConfiguration() {
    const auto path = KartoProcess::configurationPath(desktop_);
    const Edit& edit = oneOf(edits);
    if (oneIn(6)) {
        std::filesystem::remove(path);
        return;
    }
    KartoProcess::writeConfiguration(desktop_, edit.text);
    if (!edit.hyper.empty()) {
        keys_.hyper = edit.hyper;
    }
}

void Storm::changeDisplays() {
    if (!desktop_.hasOutputs()) {
        return;
    }
    switch (below(3)) {
    case 0:
        isTowerConnected_ = !isTowerConnected_;
        desktop_.setConnected(isTowerRenamed_ ? "Steeple" : "Tower", isTowerConnected_);
        break;
    case 1:
        isStudioTurned_ = !isStudioTurned_;
        desktop_.resize("Studio", isStudioTurned_ ? Size{.width = 800, .height = 1100} : zone::studio.size());
        break;
    default:
        isTowerRenamed_ = !isTowerRenamed_;
        desktop_.rename(isTowerRenamed_ ? "Tower" : "Steeple", isTowerRenamed_ ? "Steeple" : "Tower");
    }
}

void Storm::changeKeyboard() {
    if (oneIn(2)) {
        keys_.setLocks(oneIn(2));
        return;
    }
    constexpr std::array layouts{"us", "fr", "de", "ru"};
    desktop_.run({"setxkbmap", oneOf(layouts)});
}

void Storm::grabServer() {
    xcb_grab_server(desktop_.x().connection());
    giveCommand();
    hesitate(500ms);
    xcb_ungrab_server(desktop_.x().connection());
    desktop_.x().settle();
}

void Storm::restartManager() {
    desktop_.killWindowManager();
    giveCommand();
    hesitate(100ms);
    desktop_.startWindowManager("openbox");
    // It has the outputs back where they began.
    isTowerConnected_ = true;
    isStudioTurned_ = false;
}

void Storm::restartCompositor() {
    if (isComposited_) {
        compositor_.reset();
        compositor_ = std::make_unique<ChildProcess>(
            desktop_.start({"picom", "--backend", "xrender", "--config", "/dev/null"}));
    }
}

void Storm::togglePanel() {
    if (panel_) {
        panel_.reset();
    } else {
        panel_ = std::make_unique<ChildProcess>(startPanel(desktop_, studioAndTower[1].area, panelHeight));
    }
}

void Storm::openSettings() {
    KartoProcess further(desktop_);
    if (further.process().waitForExit() != Exit{.status = 0, .signal = {}}) {
        throw std::runtime_error("a further start did not end in an orderly way: " +
                                 further.process().errors());
    }
    // They come in their own time, which is not to be after the storm.
    eventually([this] { return !ownWindows().empty(); }, 5s);
}

void Storm::useSettings() {
    const auto windows = ownWindows();
    const auto frame = windows.empty() ? std::nullopt : desktop_.x().frameOf(oneOf(windows));
    if (!frame) {
        return;
    }
    for (int times = 1 + below(6); times > 0; --times) {
        if (oneIn(3)) {
            constexpr std::array keys{"TAB",  "TAB",  "SPCE", "RTRN", "UP",
                                      "DOWN", "LEFT", "RGHT", "ESC",  "AD06"};
            keys_.tap(oneOf(keys));
        } else if (oneIn(6)) {
            // Undoes.
            keys_.press("LCTL");
            keys_.tap("AB01");
            keys_.release("LCTL");
        } else {
            mouse_.press(somePointIn(*frame));
            if (oneIn(3)) {
                mouse_.move(somePointIn(*frame));
            }
            mouse_.release();
        }
        hesitate(30ms);
    }
}

void Storm::editOnScreen() {
    if (ownWindows().empty()) {
        return;
    }
    const Rect& display = studioAndTower[std::size_t(below(2))].area;
    const bool isFree = oneIn(2);
    if (isFree) {
        keys_.press("LALT");
    }
    // Where boundaries and buttons are likely.
    const Point start = oneIn(2) ? Point{.x = display.x + display.width / 2, .y = somePointIn(display).y}
                                 : somePointIn(display);
    mouse_.move(start);
    hesitate(30ms);
    mouse_.press();
    for (int moves = below(6); moves > 0; --moves) {
        mouse_.move(somePointIn(display));
        hesitate(10ms);
    }
    mouse_.release();
    if (isFree) {
        keys_.release("LALT");
    }
}

void Storm::closeSettings() {
    // A question in front of them is to be answered first.
    if (const auto windows = ownWindows(); !windows.empty()) {
        desktop_.x().close(windows.back());
        desktop_.x().flush();
    }
}

int Storm::below(int number) { return std::uniform_int_distribution(0, number - 1)(random_); }

Rect Storm::someArea() {
    return {.x = double(below(1600)),
            .y = double(below(700)),
            .width = double(60 + below(700)),
            .height = double(60 + below(500))};
}

Point Storm::somePointIn(const Rect& area) {
    return {.x = area.x + below(int(area.width)), .y = area.y + below(int(area.height))};
}

void Storm::hesitate(std::chrono::milliseconds longest) {
    std::this_thread::sleep_for(std::chrono::milliseconds(below(int(longest.count()))));
}

} // namespace karto::desktop
