#include "Karto/Coordinator.h"

#include "KartoCore/DisplayForWindow.h"
#include "KartoCore/Membership.h"
#include "KartoCore/NumberText.h"
#include "KartoCore/RingNavigator.h"
#include "KartoCore/TidyPlanner.h"
#include "KartoCore/ZoneSets.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

namespace {

// Points by which a window may miss its target in any field: terminals and the like keep to their own steps.
constexpr double tolerance = 20;

Rect differences(const Rect& a, const Rect& b) {
    return {.x = std::abs(a.x - b.x),
            .y = std::abs(a.y - b.y),
            .width = std::abs(a.width - b.width),
            .height = std::abs(a.height - b.height)};
}

bool matches(const Rect& a, const Rect& b) {
    const Rect off = differences(a, b);
    return off.x <= tolerance && off.y <= tolerance && off.width <= tolerance && off.height <= tolerance;
}

std::string text(const Rect& rect) {
    return fmt::format("({}, {}, {}, {})", shortestDecimal(rect.x), shortestDecimal(rect.y),
                       shortestDecimal(rect.width), shortestDecimal(rect.height));
}

bool movesIntoZones(const KartoCommand& command) {
    return command != KartoCommand::fillDisplay && command != KartoCommand::cycleWindows &&
           command != KartoCommand::cancelCycling;
}

// Every distinct name in the order of its first appearance, with its count when there are several.
std::string summarize(std::span<const std::string> names) {
    std::vector<std::string> parts;
    for (auto name = names.begin(); name != names.end(); ++name) {
        if (std::find(names.begin(), name, *name) != name) {
            continue;
        }
        const auto count = std::ranges::count(names, *name);
        parts.push_back(count > 1 ? fmt::format("{} ({}x)", *name, count) : *name);
    }
    return fmt::format("{}", fmt::join(parts, ", "));
}

std::vector<ResolvedZone> zonesOf(const DisplayInfo& display, std::span<const ResolvedZone> ring) {
    std::vector<ResolvedZone> zones;
    std::ranges::copy_if(ring, std::back_inserter(zones), [&](const ResolvedZone& zone) {
        return zone.display == display.name && zone.orientation == display.orientation();
    });
    return zones;
}

} // namespace

Coordinator::Coordinator(WindowControlling& windows, DisplayProviding& displays,
                         const ConfigProviding& config, CheckLog& log)
    : windows_(windows)
    , displays_(displays)
    , config_(config)
    , log_(log) {}

void Coordinator::handle(const KartoCommand& command) {
    const auto& displays = displays_.displays();
    const auto config = config_.current();
    if (!config) {
        if (command == KartoCommand::fillDisplay) {
            fillDisplay(displays);
        } else {
            log_.append(fmt::format("command {}: no config loaded, ignored", command.caseName()));
        }
        return;
    }
    const auto ring = ZoneResolver::resolve(*config, displays);
    const auto collisions = ZoneResolver::collisions(*config, displays);
    for (const auto& [name, orientation, count] : collisions) {
        log_.append(fmt::format("command {}: {} displays share the name \"{}\" ({}) — zones for it cannot be "
                                "told apart, placement on all but one is wrong",
                                command.caseName(), count, name, rawName(orientation)));
    }
    dispatch(command, ring, displays, collisions);
}

void Coordinator::dispatch(const KartoCommand& command, Ring ring, Displays displays, Collisions collisions) {
    using enum KartoCommand::Kind;
    if (ring.empty() && movesIntoZones(command)) {
        log_.append(fmt::format("command {}: ring is empty, ignored", command.caseName()));
        return;
    }
    switch (command.kind()) {
    case moveToZone:
        move(command,
             [&](const Rect&, WindowHandle) { return RingNavigator::destination(command.zone(), ring); });
        break;
    case nextZone:
        move(command, [&](const Rect& frame, WindowHandle) {
            return RingNavigator::destination(frame, ring, RingDirection::next);
        });
        break;
    case previousZone:
        move(command, [&](const Rect& frame, WindowHandle) {
            return RingNavigator::destination(frame, ring, RingDirection::previous);
        });
        break;
    case expandZone:
        move(command,
             [&](const Rect& frame, WindowHandle window) { return expandDestination(frame, window, ring); });
        break;
    case shrinkZone:
        move(command,
             [&](const Rect& frame, WindowHandle window) { return shrinkDestination(frame, window, ring); });
        break;
    case snapToZone:
        move(command,
             [&](const Rect& frame, WindowHandle) { return RingNavigator::snapDestination(frame, ring); });
        break;
    case tidy: this->tidy(ring, displays, collisions); break;
    case fillDisplay: this->fillDisplay(displays); break;
    case cycleWindows:
    case cancelCycling:
        log_.append(fmt::format("command {}: reached the coordinator, which does not run the window "
                                "switcher — routing bug",
                                command.caseName()));
        break;
    }
}

void Coordinator::move(const KartoCommand& command, const Destination& destination) {
    const std::string context = "command " + command.caseName() + ": ";
    const auto window = windows_.focusedWindow();
    if (!window) {
        log_.append(context + "no focused window, ignored");
        return;
    }
    if (windows_.isFullscreen(*window)) {
        log_.append(context + "focused window is fullscreen, ignored");
        return;
    }
    const auto frame = windows_.frame(*window);
    if (!frame) {
        log_.append(context + "could not read focused window's frame, ignored");
        return;
    }
    const auto target = destination(*frame, *window);
    if (!target) {
        log_.append(fmt::format("{}no destination found for frame {}, ignored", context, text(*frame)));
        return;
    }
    windows_.setFrame(*target, *window);
    const auto result = windows_.frame(*window);
    if (!result) {
        log_.append(
            fmt::format("{}target {}, could not read back the resulting frame", context, text(*target)));
        return;
    }
    log_.append(fmt::format("{}target {}, result {}, off by {}{}", context, text(*target), text(*result),
                            text(differences(*result, *target)),
                            matches(*result, *target) ? "" : " — WINDOW DID NOT ACCEPT THE FRAME"));
}

void Coordinator::fillDisplay(Displays displays) {
    move(KartoCommand::fillDisplay, [&](const Rect& frame, WindowHandle) {
        const auto display = DisplayForWindow::holding(frame, displays);
        return display ? std::optional(display->frame) : std::nullopt;
    });
}

std::optional<Rect> Coordinator::expandDestination(const Rect& frame, WindowHandle window, Ring ring) {
    const auto state = ZoneSets::state(frame, ring);
    if (!state) {
        return std::nullopt;
    }
    if (state->size() == 1) {
        rememberOrigin(window, ring[*state->begin()].order);
    }
    const auto expanded = ZoneSets::expanded(*state, ring);
    return expanded ? ZoneSets::rect(*expanded, ring) : std::nullopt;
}

std::optional<Rect> Coordinator::shrinkDestination(const Rect& frame, WindowHandle window, Ring ring) {
    const auto state = ZoneSets::state(frame, ring);
    if (!state) {
        return std::nullopt;
    }
    const auto shrunk = ZoneSets::shrunk(*state, origin(window, ring), ring);
    return shrunk ? ZoneSets::rect(*shrunk, ring) : std::nullopt;
}

void Coordinator::rememberOrigin(WindowHandle window, int order) {
    auto& origin = expansionOrigins_[window];
    origin.order = order;
    if (!origin.closing) {
        origin.closing = windows_.observeClosing(
            window, callbacks_.wrap([this, window] { expansionOrigins_.erase(window); }));
    }
}

std::optional<std::size_t> Coordinator::origin(WindowHandle window, Ring ring) {
    const auto recorded = expansionOrigins_.find(window);
    if (recorded == expansionOrigins_.end()) {
        return std::nullopt;
    }
    const auto zone = std::ranges::find(ring, recorded->second.order, &ResolvedZone::order);
    if (zone == ring.end()) {
        expansionOrigins_.erase(recorded);
        return std::nullopt;
    }
    return static_cast<std::size_t>(zone - ring.begin());
}

void Coordinator::tidy(Ring ring, Displays displays, Collisions collisions) {
    const auto window = windows_.focusedWindow();
    if (!window) {
        log_.append("command tidy: no focused window, ignored");
        return;
    }
    const auto frame = windows_.frame(*window);
    if (!frame) {
        log_.append("command tidy: could not read focused window's frame, ignored");
        return;
    }
    const auto displayFrames = frames(displays);
    const auto index = Membership::holder(*frame, displayFrames);
    if (!index) {
        log_.append("command tidy: no display holds the focused window, ignored");
        return;
    }
    const DisplayInfo& display = displays[*index];
    const auto zones = zonesOf(display, ring);
    const bool isShared = std::ranges::any_of(collisions, [&](const DisplayCollision& collision) {
        return collision.name == display.name && collision.orientation == display.orientation();
    });
    if (isShared) {
        log_.append(
            fmt::format("command tidy: display name \"{}\" is shared by more than one display — the {} "
                        "zone(s) below include another monitor's, the layout will be wrong",
                        display.name, zones.size()));
    }
    if (zones.empty()) {
        log_.append(fmt::format("command tidy: no ring zones on display \"{}\", ignored", display.name));
        return;
    }
    layOut(display, zones, windows_.windows(*index, displayFrames));
}

void Coordinator::layOut(const DisplayInfo& display, Ring zones, std::span<const WindowSnapshot> list) {
    const auto plan = TidyPlanner::plan(list.size(), zones);
    std::vector<std::string> refusals;
    for (std::size_t i = 0; i < plan.size(); ++i) {
        windows_.setFrame(plan[i], list[i].element);
        const auto result = windows_.frame(list[i].element);
        if (!result || !matches(*result, plan[i])) {
            refusals.push_back(list[i].shownAppName());
        }
    }
    auto outcome =
        fmt::format("command tidy: laid out {} window(s) on display \"{}\" across {} zone(s), {} accepted",
                    plan.size(), display.name, zones.size(), plan.size() - refusals.size());
    if (!refusals.empty()) {
        outcome += fmt::format(", {} did not take the frame: {}", refusals.size(), summarize(refusals));
    }
    log_.append(outcome);
}

} // namespace karto
