#include "Karto/Platform/X11/Stage/StageOrder.h"

#include "Karto/Platform/X11/Server/TopLevel.h"
#include "Karto/Platform/X11/Server/WindowFacts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ranges>
#include <utility>

namespace karto::x11 {

namespace {

// Windows mostly change places in bursts.
constexpr std::chrono::milliseconds gatherTime{8};
// Until what a window manager says about its windows has followed what it does to them.
constexpr std::chrono::milliseconds settleTime{100};
// So many corrections, and then peace until the desktop has been left alone for that long.
constexpr int mostCorrections = 5;
constexpr std::chrono::milliseconds calmTime{1000};
// A window manager that has lifted the windows so often will do it again.
constexpr int mostLifts = 2;

void stackBeside(const Connection& connection, xcb_window_t window, xcb_window_t sibling,
                 xcb_stack_mode_t side) {
    const std::array<std::uint32_t, 2> values{sibling, side};
    xcb_configure_window(connection.get(), window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                         values.data());
}

// Each of these is given windows from the top down.
void stackBelow(const Connection& connection, std::span<const xcb_window_t> windows, xcb_window_t sibling) {
    for (const auto window : windows) {
        stackBeside(connection, window, std::exchange(sibling, window), XCB_STACK_MODE_BELOW);
    }
}

void stackInFront(const Connection& connection, std::span<const xcb_window_t> windows) {
    if (windows.empty()) {
        return;
    }
    constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection.get(), windows.front(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    stackBelow(connection, windows.subspan(1), windows.front());
}

void stackTogether(const Connection& connection, std::span<const xcb_window_t> windows) {
    for (auto i = windows.size(); i > 1; --i) {
        stackBeside(connection, windows[i - 2], windows[i - 1], XCB_STACK_MODE_ABOVE);
    }
}

bool changesOrder(const xcb_generic_event_t& event, xcb_window_t root) {
    switch (eventCode(event)) {
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_CONFIGURE_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_CIRCULATE_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        // They all begin alike.
        return eventAs<xcb_map_notify_event_t>(event).event == root;
    default: return false;
    }
}

} // namespace

StageOrder::StageOrder(Connection& connection, WindowManager& manager, Scheduler& scheduler, CutOut cutOut,
                       ShowAnew showAnew)
    : connection_(connection)
    , manager_(manager)
    , scheduler_(scheduler)
    , cutOut_(std::move(cutOut))
    , showAnew_(std::move(showAnew)) {}

void StageOrder::want(Wanted wanted) {
    wanted_ = std::move(wanted);
    immovable_.clear();
    corrections_ = 0;
    if (wanted_.front.empty() && wanted_.below.empty()) {
        topLevels_.clear();
        events_.reset();
        rootEvents_.reset();
        checking_.reset();
        checkingAgain_.reset();
        return;
    }
    if (!events_) {
        rootEvents_ = connection_.select(connection_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        events_ = connection_.observe([this](const xcb_generic_event_t& event) { note(event); });
    }
    if (wanted_.below.empty()) {
        // Another window manager may run by the next time, and a person may have lowered the windows.
        lifts_ = 0;
        return;
    }
    // That one paints all windows that it does not manage above all that it does.
    isPaintedOnTop_ = wanted_.isComposited && manager_.name() == "KWin";
    const auto stack = readStack();
    for (const auto& [window, own] : wanted_.below) {
        topLevel(window, stack);
        cutOut(window);
    }
}

void StageOrder::restack() {
    for (const auto& [window, own] : wanted_.below) {
        const auto known = topLevels_.find(window);
        if (isLifted()) {
            stackInFront(connection_, own);
        } else if (known != topLevels_.end()) {
            stackBelow(connection_, own, known->second);
        }
    }
    stackInFront(connection_, wanted_.front);
}

void StageOrder::note(const xcb_generic_event_t& event) {
    if (!changesOrder(event, connection_.root())) {
        return;
    }
    if (!checking_) {
        checking_ = scheduler_.after(gatherTime, callbacks_.wrap([this] {
            checking_.reset();
            check();
        }));
    }
    if (mustCutOut()) {
        checkingAgain_ = scheduler_.after(settleTime, callbacks_.wrap([this] { check(); }));
    }
}

void StageOrder::check() {
    const auto stack = readStack();
    if (stack.empty()) {
        return;
    }
    keepInFront(stack);
    for (const auto& [window, own] : wanted_.below) {
        keepBelow(window, own, stack);
    }
    connection_.flush();
}

void StageOrder::keepInFront(Stack stack) {
    const auto isOwn = [this](xcb_window_t window) {
        return std::ranges::find(wanted_.front, window) != wanted_.front.end();
    };
    const auto others = [&](Stack all) {
        std::set<xcb_window_t> above(std::ranges::find_if(all, isOwn), all.end());
        std::erase_if(above, isOwn);
        return above;
    };
    if (std::ranges::includes(immovable_, others(stack)) || !mayCorrect()) {
        return;
    }
    stackInFront(connection_, wanted_.front);
    if (wanted_.isComposited && manager_.paintsByAge()) {
        showAnew_();
    }
    const auto corrected = readStack();
    immovable_ = others(corrected);
}

void StageOrder::keepBelow(WindowHandle window, const std::vector<xcb_window_t>& own, Stack stack) {
    if (const auto sibling = topLevel(window, stack)) {
        const auto place = std::ranges::find(stack, *sibling);
        const auto lifted = std::ranges::find_first_of(place, stack.end(), own.begin(), own.end());
        lifts_ += lifted != stack.end() ? 1 : 0;
        // What is not brought below it again must at least stay together.
        const auto top = isLifted() ? std::ranges::find(stack, own.front()) : place;
        const auto end = isLifted() && top != stack.end() ? std::next(top) : top;
        const auto actual =
            std::span(stack.begin(), end) | std::views::reverse | std::views::take(own.size());
        if (!std::ranges::equal(actual, own) && mayCorrect()) {
            isLifted() ? stackTogether(connection_, own) : stackBelow(connection_, own, *sibling);
        }
    }
    cutOut(window);
}

bool StageOrder::isLifted() const { return lifts_ >= mostLifts; }

bool StageOrder::mustCutOut() const { return lifts_ > 0 || isPaintedOnTop_; }

void StageOrder::cutOut(WindowHandle window) {
    cutOut_(window, mustCutOut() ? framesFrom(window) : std::vector<PixelRect>());
}

bool StageOrder::mayCorrect() {
    if (corrections_ >= mostCorrections) {
        return false;
    }
    ++corrections_;
    calmingDown_ = scheduler_.after(calmTime, callbacks_.wrap([this] { corrections_ = 0; }));
    return true;
}

std::vector<xcb_window_t> StageOrder::readStack() {
    const auto tree = connection_.await<xcb_query_tree_reply_t>(
        xcb_query_tree(connection_.get(), connection_.root()), deadlineFromNow());
    if (!tree) {
        return {};
    }
    const auto* first = xcb_query_tree_children(tree.get());
    return {first, first + tree->children_len};
}

std::optional<xcb_window_t> StageOrder::topLevel(WindowHandle window, Stack stack) {
    const auto known = topLevels_.find(window);
    if (known != topLevels_.end() && std::ranges::find(stack, known->second) != stack.end()) {
        return known->second;
    }
    topLevels_.erase(window);
    const auto found = topLevelOf(connection_, window.id, deadlineFromNow());
    if (found) {
        topLevels_[window] = *found;
    }
    return found;
}

std::vector<PixelRect> StageOrder::framesFrom(WindowHandle window) {
    const auto deadline = deadlineFromNow();
    const auto& atoms = connection_.atoms();
    const auto desktopRequest =
        requestProperty(connection_, connection_.root(), atoms.netCurrentDesktop, XCB_ATOM_CARDINAL, 1);
    const auto list = connection_.await<xcb_get_property_reply_t>(
        requestProperty(connection_, connection_.root(), atoms.netClientListStacking, XCB_ATOM_WINDOW,
                        mostWindows),
        deadline);
    const auto desktop = connection_.await<xcb_get_property_reply_t>(desktopRequest, deadline);
    const auto currentDesktop = words(desktop.get());
    const auto clients = words(list.get());

    std::vector<FactsRequest> requests;
    for (auto client = std::ranges::find(clients, window.id); client != clients.end(); ++client) {
        requests.emplace_back(connection_, *client);
    }
    std::vector<PixelRect> frames;
    for (const auto& request : requests) {
        const auto facts = request.receive(connection_, deadline);
        const bool isElsewhere =
            facts && facts->desktop && !currentDesktop.empty() && *facts->desktop != currentDesktop.front();
        if (facts && !facts->isHidden && !isElsewhere) {
            const auto frame = facts->visibleFrame();
            frames.push_back({.x = static_cast<int>(frame.x),
                              .y = static_cast<int>(frame.y),
                              .width = static_cast<int>(frame.width),
                              .height = static_cast<int>(frame.height)});
        }
    }
    return frames;
}

} // namespace karto::x11
