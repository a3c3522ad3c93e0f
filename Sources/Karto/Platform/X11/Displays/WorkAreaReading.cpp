#include "Karto/Platform/X11/Displays/WorkAreaReading.h"

#include "Karto/Platform/X11/Displays/WorkArea.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

namespace karto::x11 {

namespace {

// Names are made for no more: they stay on the server for ever.
constexpr std::uint32_t mostDesktops = 256;

std::optional<xcb_atom_t> nameOfAreas(Connection& connection, std::uint32_t desktop, AreaAtoms& known) {
    if (const auto found = known.find(desktop); found != known.end()) {
        return found->second;
    }
    const std::string name = fmt::format("_GTK_WORKAREAS_D{}", desktop);
    const auto request =
        xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const auto reply = connection.await<xcb_intern_atom_reply_t>(request, deadlineFromNow());
    if (!reply) {
        return std::nullopt;
    }
    return known.emplace(desktop, reply->atom).first->second;
}

} // namespace

CurrentDesktopRequest requestCurrentDesktop(Connection& connection) {
    const Atoms& atoms = connection.atoms();
    const auto request = [&](xcb_atom_t property) {
        return requestProperty(connection, connection.root(), property, XCB_ATOM_CARDINAL, mostDesktops * 4);
    };
    return {.number = request(atoms.netCurrentDesktop),
            .size = request(atoms.netDesktopGeometry),
            .workAreas = request(atoms.netWorkarea)};
}

std::optional<CurrentDesktop> awaitCurrentDesktop(Connection& connection,
                                                  const CurrentDesktopRequest& request, Size size,
                                                  Deadline deadline) {
    const auto number = connection.await<xcb_get_property_reply_t>(request.number, deadline);
    const auto declaredSize = connection.await<xcb_get_property_reply_t>(request.size, deadline);
    const auto workAreas = connection.await<xcb_get_property_reply_t>(request.workAreas, deadline);
    const std::array<double, 2> actual{size.width, size.height};
    const auto declared = words(declaredSize.get());
    if (!declared.empty() && !std::ranges::equal(declared, actual)) {
        return std::nullopt;
    }
    // A manager without desktops has the one.
    CurrentDesktop desktop;
    if (const auto current = words(number.get()); !current.empty()) {
        desktop.number = current.front();
    }
    const auto byDesktop = areas(words(workAreas.get()), size);
    if (desktop.number < byDesktop.size()) {
        desktop.workArea = byDesktop[desktop.number];
    }
    return desktop;
}

std::optional<xcb_get_property_cookie_t> requestAreasByMonitor(Connection& connection, std::uint32_t desktop,
                                                               AreaAtoms& known) {
    if (desktop >= mostDesktops) {
        return std::nullopt;
    }
    const auto name = nameOfAreas(connection, desktop, known);
    if (!name) {
        return std::nullopt;
    }
    return requestProperty(connection, connection.root(), *name, XCB_ATOM_CARDINAL);
}

std::vector<Rect> awaitAreasByMonitor(Connection& connection, xcb_get_property_cookie_t request, Size desktop,
                                      Deadline deadline) {
    const auto reply = connection.await<xcb_get_property_reply_t>(request, deadline);
    std::vector<Rect> result;
    for (const auto& area : areas(words(reply.get()), desktop)) {
        if (area) {
            result.push_back(*area);
        }
    }
    return result;
}

} // namespace karto::x11
