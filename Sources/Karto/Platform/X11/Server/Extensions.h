#pragma once
// The extensions of the server that this program uses.

#include <xcb/randr.h>
#include <xcb/render.h>
#include <xcb/res.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

// The header of the keyboard extension names a field with a word that C++ reserves.
#define explicit explicit_ // NOLINT(clang-diagnostic-keyword-macro)
#include <xcb/xkb.h>
#undef explicit

#include <array>

namespace karto::x11 {

// To be asked for in one flight: xcb waits without a bound for an extension that nobody has asked for yet.
inline constexpr std::array extensions{&xcb_input_id, &xcb_randr_id,  &xcb_render_id, &xcb_res_id,
                                       &xcb_shape_id, &xcb_xfixes_id, &xcb_xkb_id};

} // namespace karto::x11
