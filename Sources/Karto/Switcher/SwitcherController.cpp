#include "Karto/Switcher/SwitcherController.h"

#include "KartoCore/Membership.h"
#include "KartoCore/SwitcherPanelLayout.h"
#include "KartoCore/WindowCycle.h"
#include "KartoCore/ZoneResolver.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace karto {

namespace {

Rect scaled(const Rect& rect, double factor) {
    return {.x = rect.x * factor,
            .y = rect.y * factor,
            .width = rect.width * factor,
            .height = rect.height * factor};
}

// The layout counts in points, of which a display of high resolution has fewer than pixels.
Rect panelFrame(int rowCount, const Rect& zone, const Rect& display, double scale) {
    const auto frame = scaled(
        SwitcherPanelLayout::frame(rowCount, scaled(zone, 1 / scale), scaled(display, 1 / scale)), scale);
    // The size alone decides on how many pixels are painted, wherever the panel stands.
    return {.x = std::round(frame.x),
            .y = std::round(frame.y),
            .width = std::round(frame.width),
            .height = std::round(frame.height)};
}

std::vector<SwitcherRow> rowsOf(const std::vector<WindowSnapshot>& entries) {
    std::vector<SwitcherRow> rows;
    rows.reserve(entries.size());
    for (const WindowSnapshot& entry : entries) {
        rows.push_back({.id = static_cast<int>(rows.size()),
                        .icon = entry.icon,
                        .appName = entry.shownAppName(),
                        .title = entry.title});
    }
    return rows;
}

std::optional<std::size_t> indexOf(WindowHandle window, const std::vector<WindowSnapshot>& entries) {
    const auto found = std::ranges::find(entries, window, &WindowSnapshot::element);
    return found == entries.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - entries.begin()));
}

} // namespace

SwitcherController::SwitcherController(WindowControlling& windows, DisplayProviding& displays,
                                       const ConfigProviding& config, SwitcherWindow& panel, CheckLog& log)
    : windows_(windows)
    , displays_(displays)
    , config_(config)
    , panel_(panel)
    , log_(log) {}

void SwitcherController::start(ModifierWatching& modifiers) {
    modifiers.start(callbacks_.wrap([this](ModifierSet held) { modifiersChanged(held); }));
    styleChanges_ = panel_.observeStyleChanges(callbacks_.wrap([this] {
        if (session_) {
            show(*session_);
        }
    }));
}

void SwitcherController::advance() {
    if (session_) {
        session_->selected = WindowCycle::next(session_->selected, session_->entries.size()).value_or(0);
        show(*session_);
        return;
    }
    auto begun = begin();
    if (!begun) {
        log_.append("switcher: " + begun.error());
        return;
    }
    auto& [session, sentence] = *begun;
    show(session_.emplace(std::move(session)));
    log_.append("switcher: " + sentence);
}

void SwitcherController::cancel() {
    if (!session_) {
        return;
    }
    session_.reset();
    panel_.orderOut();
    log_.append("switcher: cancelled, nothing raised");
}

std::expected<SwitcherController::Beginning, std::string> SwitcherController::begin() {
    const auto focused = windows_.focusedWindow();
    if (!focused) {
        return std::unexpected("no focused window, ignored");
    }
    const auto focusedFrame = windows_.frame(*focused);
    if (!focusedFrame) {
        return std::unexpected("could not read the focused window's frame, ignored");
    }
    const auto config = config_.current();
    if (!config) {
        return std::unexpected("no config loaded, ignored");
    }
    const auto combination = config_.hotkeyModifiers();
    if (combination.empty()) {
        return std::unexpected("hotkey modifiers are empty, nothing could ever release the gesture, ignored");
    }
    return beginAround(*focused, *focusedFrame, *config, combination);
}

std::expected<SwitcherController::Beginning, std::string>
SwitcherController::beginAround(WindowHandle focused, const Rect& focusedFrame, const KartoConfig& config,
                                ModifierSet combination) {
    const auto& displays = displays_.displays();
    const auto zones = ZoneResolver::resolve(config, displays);
    const auto zoneIndex = Membership::zoneIndex(focusedFrame, zones);
    if (!zoneIndex) {
        return std::unexpected("the focused window is in no zone, ignored");
    }
    const ResolvedZone& zone = zones[*zoneIndex];
    const auto display = std::ranges::find_if(displays, [&](const DisplayInfo& each) {
        return each.name == zone.display && each.orientation() == zone.orientation;
    });
    if (display == displays.end()) {
        return std::unexpected(fmt::format("no connected display named \"{}\" ({}), ignored", zone.display,
                                           rawName(zone.orientation)));
    }
    auto entries = windows_.windows(static_cast<std::size_t>(display - displays.begin()), frames(displays));
    std::erase_if(entries, [&](const WindowSnapshot& window) {
        return Membership::zoneIndex(window.frame, zones) != zoneIndex;
    });
    const auto place = fmt::format("{} window(s) in zone {}", entries.size(), zone.order);
    const auto selected = WindowCycle::first(entries.size(), indexOf(focused, entries));
    if (!selected) {
        return std::unexpected(place + ", nothing to cycle");
    }
    auto rows = rowsOf(entries);
    return Beginning{.session = {.entries = std::move(entries),
                                 .rows = std::move(rows),
                                 .frame = {},
                                 .selected = *selected,
                                 .combination = combination,
                                 .zone = zone.rect,
                                 .display = display->frame},
                     .sentence = fmt::format("{} on \"{}\"", place, display->name)};
}

void SwitcherController::show(Session& session) {
    const double scale = panel_.scale();
    const int rowCount = static_cast<int>(session.rows.size());
    const int selected = static_cast<int>(session.selected);
    const auto [first, count] = SwitcherPanelLayout::shownRows(rowCount, selected, session.firstRow,
                                                               scaled(session.display, 1 / scale));
    session.firstRow = first;
    session.frame = panelFrame(count, session.zone, session.display, scale);
    const auto shown = session.rows.begin() + first;
    panel_.show({.rows = {shown, shown + count},
                 .selected = selected,
                 .continuesAbove = first > 0,
                 .continuesBelow = first + count < rowCount},
                session.frame);
}

void SwitcherController::modifiersChanged(ModifierSet held) {
    if (!session_ || held == session_->combination) {
        return;
    }
    const Session session = *std::move(session_);
    session_.reset();
    panel_.orderOut();
    const WindowSnapshot& chosen = session.entries[session.selected];
    if (!windows_.frame(chosen.element)) {
        log_.append("switcher: the selected window did not answer, nothing raised");
        return;
    }
    windows_.raise(chosen);
    log_.append("switcher: raised a window of " + chosen.shownAppName());
}

} // namespace karto
