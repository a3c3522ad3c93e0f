#include "Karto/Platform/X11/Stage/Cursors.h"

#include "Karto/Platform/X11/Server/Extensions.h"

#include <xcb/xcb_cursor.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace karto::x11 {

namespace {

// The names that themes use. The last one is known to every server, too.
constexpr std::array arrowNames{"default", "left_ptr"};
constexpr std::array leftRightNames{"ew-resize", "size_hor", "h_double_arrow", "sb_h_double_arrow"};
constexpr std::array upDownNames{"ns-resize", "size_ver", "v_double_arrow", "sb_v_double_arrow"};

using Names = std::span<const char* const>;

const std::array<std::pair<Cursor, Names>, 3> namesOfCursors{{{Cursor::arrow, arrowNames},
                                                              {Cursor::resizeLeftRight, leftRightNames},
                                                              {Cursor::resizeUpDown, upDownNames}}};

xcb_cursor_t load(xcb_cursor_context_t* context, Names names) {
    for (const char* name : names) {
        if (const auto cursor = xcb_cursor_load_cursor(context, name); cursor != XCB_CURSOR_NONE) {
            return cursor;
        }
    }
    return XCB_CURSOR_NONE;
}

} // namespace

Cursors::Cursors(Connection& connection, std::function<void()> onChange)
    : connection_(connection)
    , rootEvents_(connection.select(connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE))
    , events_(connection.observe([this, onChange = std::move(onChange)](const xcb_generic_event_t& event) {
        if (!known_.empty() && changesProperty(event, connection_.root(), {XCB_ATOM_RESOURCE_MANAGER})) {
            clear();
            onChange();
        }
    })) {}

xcb_cursor_t Cursors::find(Cursor cursor) {
    if (known_.empty()) {
        load();
    }
    const auto known = known_.find(cursor);
    return known != known_.end() ? known->second : xcb_cursor_t{XCB_CURSOR_NONE};
}

void Cursors::load() {
    // Reading the theme's name waits for the server without a bound: not while nothing comes from there.
    const bool answers = connection_.await<xcb_get_input_focus_reply_t>(
                             xcb_get_input_focus(connection_.get()), deadlineFromNow()) != nullptr;
    xcb_cursor_context_t* context = nullptr;
    auto screen = connection_.screen();
    if (!answers || xcb_cursor_context_new(connection_.get(), &screen, &context) < 0) {
        return;
    }
    for (const auto& [cursor, names] : namesOfCursors) {
        const auto loaded = x11::load(context, names);
        // By its name a desktop finds it when the person chooses another theme.
        xcb_xfixes_set_cursor_name(connection_.get(), loaded,
                                   static_cast<std::uint16_t>(std::strlen(names.back())), names.back());
        known_.emplace(cursor, loaded);
    }
    xcb_cursor_context_free(context);
}

void Cursors::clear() {
    for (const auto& [cursor, loaded] : std::exchange(known_, {})) {
        xcb_free_cursor(connection_.get(), loaded);
    }
}

} // namespace karto::x11
