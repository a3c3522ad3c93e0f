#include "Karto/Platform/X11/Windows/WindowPlacer.h"

#include <algorithm>
#include <cstdint>

namespace karto::x11 {

namespace {

// A window that has stopped changing for this long has given its answer.
constexpr std::chrono::milliseconds quiet{60};
// The same for a window that is known to be wrong and is asked again.
constexpr std::chrono::milliseconds shortQuiet{20};
// Until toolkits that are slow to draw have told of the shadow that a window has when it is not maximized.
constexpr std::chrono::milliseconds shadowTime{400};
constexpr int mostCorrections = 4;
// The same for a window that was not maximized: a manager that pushed it elsewhere, or obeyed by half, may
// obey the second time.
constexpr int mostRepetitions = 1;
// What looking at a window may take on a busy machine.
constexpr std::chrono::milliseconds lookTime{30};

constexpr std::uint32_t stateRemove = 0;

bool fits(const WindowFacts& facts, const Rect& target) {
    const PixelRect actual{.x = facts.x, .y = facts.y, .width = facts.width, .height = facts.height};
    const auto wanted = clientAreaFor(target, facts);
    return actual == wanted || actual == constrained(wanted, facts.sizeHints);
}

bool hasFixedSize(const xcb_size_hints_t& hints) {
    constexpr std::uint32_t bounds = XCB_ICCCM_SIZE_HINT_P_MIN_SIZE | XCB_ICCCM_SIZE_HINT_P_MAX_SIZE;
    return (hints.flags & bounds) == bounds && hints.min_width == hints.max_width &&
           hints.min_height == hints.max_height;
}

// Whether an event may bring news of a window's frame.
bool concernsFrame(const xcb_generic_event_t& event, xcb_window_t window, const Atoms& atoms) {
    switch (eventCode(event)) {
    case XCB_CONFIGURE_NOTIFY: return eventAs<xcb_configure_notify_event_t>(event).window == window;
    case XCB_DESTROY_NOTIFY: return eventAs<xcb_destroy_notify_event_t>(event).window == window;
    default:
        return changesProperty(event, window,
                               {atoms.netFrameExtents, atoms.gtkFrameExtents, atoms.netWmState});
    }
}

} // namespace

PixelRect clientAreaFor(const Rect& frame, const WindowFacts& facts) {
    const auto pixels = nearestPixels(frame);
    const Insets& decoration = facts.decoration;
    const Insets& shadow = facts.shadow;
    return {.x = pixels.x + decoration.left - shadow.left,
            .y = pixels.y + decoration.top - shadow.top,
            .width =
                std::max(pixels.width - decoration.left - decoration.right + shadow.left + shadow.right, 1),
            .height =
                std::max(pixels.height - decoration.top - decoration.bottom + shadow.top + shadow.bottom, 1)};
}

PixelRect constrained(PixelRect area, const xcb_size_hints_t& hints) {
    const auto pixels = [](int hint) { return std::clamp(hint, 0, mostPixels); };
    const auto constrain = [&](int length, int minimum, int maximum, int base, int increment) {
        minimum = pixels(minimum);
        base = pixels(base);
        const bool hasMinimum = (hints.flags & XCB_ICCCM_SIZE_HINT_P_MIN_SIZE) != 0;
        const bool hasBase = (hints.flags & XCB_ICCCM_SIZE_HINT_BASE_SIZE) != 0;
        if (hasMinimum || hasBase) {
            length = std::max(length, hasMinimum ? minimum : base);
        }
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_MAX_SIZE) != 0 && maximum > 0) {
            length = std::min(length, maximum);
        }
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_RESIZE_INC) != 0 && increment > 1) {
            const int fixed = hasBase ? base : (hasMinimum ? minimum : 0);
            length -= std::max(length - fixed, 0) % increment;
        }
        return length;
    };
    area.width = constrain(area.width, hints.min_width, hints.max_width, hints.base_width, hints.width_inc);
    area.height =
        constrain(area.height, hints.min_height, hints.max_height, hints.base_height, hints.height_inc);
    return area;
}

WindowPlacer::WindowPlacer(Connection& connection, WindowManager& manager, Scheduler& scheduler)
    : connection_(connection)
    , manager_(manager)
    , scheduler_(scheduler) {}

WindowPlacer::Placement& WindowPlacer::placement(xcb_window_t window, const WindowFacts& now) {
    const auto known = placements_.find(window);
    if (known != placements_.end() && !known->second.isSettled) {
        return known->second;
    }
    placements_.erase(window);
    return placements_
        .emplace(window, Placement{.target = now.visibleFrame(),
                                   .facts = now,
                                   .events = connection_.select(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                                            XCB_EVENT_MASK_PROPERTY_CHANGE),
                                   .recheck = {}})
        .first->second;
}

void WindowPlacer::setOrigin(xcb_window_t window, Point origin, const WindowFacts& now) {
    auto& asked = placement(window, now);
    asked.target.x = origin.x;
    asked.target.y = origin.y;
    asked.isSent = false;
}

void WindowPlacer::setSize(xcb_window_t window, Size size, const WindowFacts& now) {
    auto& asked = placement(window, now);
    asked.target.width = size.width;
    asked.target.height = size.height;
    asked.isSent = false;
}

void WindowPlacer::send() {
    for (auto& [window, placement] : placements_) {
        if (!placement.isSent) {
            send(window, placement);
            recheckLater(window, placement, quiet);
        }
    }
}

const WindowFacts* WindowPlacer::unsettled(xcb_window_t window) const {
    const auto known = placements_.find(window);
    return known != placements_.end() && !known->second.isSettled ? &known->second.facts : nullptr;
}

void WindowPlacer::send(xcb_window_t window, Placement& placement) {
    placement.isSent = true;
    if (!placement.facts.isMaximized) {
        // Nothing happens to a window that is asked to stay as it is, and so there would be nothing to wait
        // for.
        placement.fitted = fits(placement.facts, placement.target);
        if (!placement.fitted) {
            place(window, placement, placement.facts);
        }
        return;
    }
    placement.wasMaximized = true;
    placement.isRestoring = true;
    const auto& atoms = connection_.atoms();
    connection_.tellWindowManager(
        window, atoms.netWmState,
        {stateRemove, atoms.netWmStateMaximizedHorz, atoms.netWmStateMaximizedVert, sourceIsPager, 0});
    connection_.flush();
}

void WindowPlacer::place(xcb_window_t window, Placement& placement, const WindowFacts& facts) {
    placement.facts = facts;
    const auto area = clientAreaFor(placement.target, facts);
    // Managers are told where the decorated window goes, and how large its client becomes.
    std::array geometry{static_cast<std::uint32_t>(area.x - facts.decoration.left),
                        static_cast<std::uint32_t>(area.y - facts.decoration.top),
                        static_cast<std::uint32_t>(area.width), static_cast<std::uint32_t>(area.height)};
    // Some managers refuse a window of fixed size even its place when it is asked for a size as well.
    const std::uint32_t parts =
        hasFixedSize(facts.sizeHints)
            ? XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y
            : XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    const auto& atoms = connection_.atoms();
    if (manager_.supports(atoms.netMoveresizeWindow)) {
        const std::uint32_t flags = XCB_GRAVITY_NORTH_WEST | parts << 8 | sourceIsPager << 12;
        connection_.tellWindowManager(window, atoms.netMoveresizeWindow,
                                      {flags, geometry[0], geometry[1], geometry[2], geometry[3]});
    } else {
        // Of this request the window's own gravity says what the place is that of.
        const xcb_size_hints_t& hints = facts.sizeHints;
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_WIN_GRAVITY) != 0 &&
            hints.win_gravity == XCB_GRAVITY_STATIC) {
            geometry[0] = static_cast<std::uint32_t>(area.x);
            geometry[1] = static_cast<std::uint32_t>(area.y);
        }
        xcb_configure_window(connection_.get(), window, static_cast<std::uint16_t>(parts), geometry.data());
    }
    connection_.flush();
}

bool WindowPlacer::advance(xcb_window_t window, Placement& placement, const WindowFacts& facts) {
    if (placement.isRestoring) {
        if (!facts.isMaximized) {
            placement.isRestoring = false;
            place(window, placement, facts);
        }
        return false;
    }
    if (fits(facts, placement.target)) {
        return true;
    }
    if (facts.decoration != placement.facts.decoration || facts.shadow != placement.facts.shadow) {
        correct(window, placement, facts);
    }
    return false;
}

void WindowPlacer::correct(xcb_window_t window, Placement& placement, const WindowFacts& facts) {
    if (placement.corrections < mostCorrections) {
        ++placement.corrections;
        place(window, placement, facts);
    }
}

std::vector<const xcb_generic_event_t*> WindowPlacer::awaitChange(xcb_window_t window, std::size_t mark,
                                                                  Deadline deadline) {
    do {
        auto events = connection_.awaitEvents(mark, deadline);
        mark += events.size();
        std::erase_if(events,
                      [&](const auto* event) { return !concernsFrame(*event, window, connection_.atoms()); });
        if (!events.empty()) {
            return events;
        }
    } while (!connection_.broken() && std::chrono::steady_clock::now() < deadline);
    return {};
}

std::optional<WindowFacts> WindowPlacer::toldToFit(const Placement& asked,
                                                   std::span<const xcb_generic_event_t* const> changes) {
    auto facts = asked.facts;
    const bool isTold = !asked.wasMaximized && changes.size() == 1 && facts.follow(*changes.front());
    return isTold && fits(facts, asked.target) ? std::optional(facts) : std::nullopt;
}

std::optional<WindowFacts> WindowPlacer::settle(xcb_window_t window, Deadline deadline) {
    auto& asked = placements_.at(window);
    // The last look must be answered within the deadline as well.
    const auto lastLook = deadline - lookTime;
    bool hasChanged = false;
    if (!asked.isSent) {
        const auto mark = connection_.eventMark();
        send(window, asked);
        if (!asked.fitted) {
            // Looking any sooner would only keep the server from carrying it out.
            const auto changes = awaitChange(window, mark, lastLook);
            if (auto told = toldToFit(asked, changes)) {
                placements_.erase(window);
                return told;
            }
            hasChanged = !changes.empty();
        }
    }
    std::optional<WindowFacts> facts;
    while (true) {
        const auto mark = connection_.eventMark();
        facts = FactsRequest(connection_, window).receive(connection_, deadline);
        if (!facts || advance(window, asked, *facts)) {
            break;
        }
        // What a window that was maximized becomes first is not its answer yet.
        const auto patience = asked.wasMaximized ? shortQuiet : quiet;
        const bool isLast = asked.wasMaximized && asked.corrections == mostCorrections;
        const auto until = hasChanged && !isLast ? std::min(lastLook, deadlineFromNow(patience)) : lastLook;
        if (std::chrono::steady_clock::now() < until && !awaitChange(window, mark, until).empty()) {
            hasChanged = true;
            continue;
        }
        const bool mayAskAgain = !asked.isRestoring && until < lastLook &&
                                 asked.corrections < (asked.wasMaximized ? mostCorrections : mostRepetitions);
        if (!mayAskAgain) {
            break;
        }
        correct(window, asked, *facts);
    }
    asked.isSettled = true;
    if (asked.wasMaximized) {
        recheckLater(window, asked, quiet);
    } else {
        placements_.erase(window);
    }
    return facts;
}

void WindowPlacer::recheckLater(xcb_window_t window, Placement& placement, std::chrono::milliseconds delay) {
    placement.recheck = scheduler_.after(delay, callbacks_.wrap([this, window] { recheck(window); }));
}

void WindowPlacer::recheck(xcb_window_t window) {
    const auto known = placements_.find(window);
    if (known == placements_.end()) {
        return;
    }
    auto& asked = known->second;
    // Only a window that gave up being maximized changes late.
    if (!asked.wasMaximized || asked.corrections >= mostCorrections) {
        placements_.erase(known);
        return;
    }
    const auto facts = FactsRequest(connection_, window).receive(connection_, deadlineFromNow());
    const bool wasMaximizedAgain = facts && !asked.isRestoring && facts->isMaximized;
    const int before = asked.corrections;
    const bool isRight = facts && !wasMaximizedAgain && advance(window, asked, *facts);
    // By the last look a person may have moved it: only a shadow is a reason to correct it then.
    const bool isCorrected = asked.corrections != before;
    if (wasMaximizedAgain || (asked.isLastLook && !isCorrected)) {
        placements_.erase(known);
        return;
    }
    if (isRight) {
        asked.isLastLook = true;
        recheckLater(window, asked, shadowTime);
        return;
    }
    if (!isCorrected && facts && !asked.isRestoring) {
        correct(window, asked, *facts);
    } else if (!isCorrected) {
        ++asked.corrections;
    }
    recheckLater(window, asked, quiet);
}

} // namespace karto::x11
