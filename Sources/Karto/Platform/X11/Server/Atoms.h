#pragma once
// The atoms that this program uses, asked for once in one flight.

#include <xcb/xcb.h>

#include <array>
#include <string_view>
#include <utility>

namespace karto::x11 {

struct Atoms {
    xcb_atom_t comptonShadow = XCB_ATOM_NONE;
    xcb_atom_t gtkApplicationId = XCB_ATOM_NONE;
    xcb_atom_t gtkFrameExtents = XCB_ATOM_NONE;
    xcb_atom_t kartoAgent = XCB_ATOM_NONE;
    xcb_atom_t kdeNetWmDesktopFile = XCB_ATOM_NONE;
    xcb_atom_t kdeNetWmWindowTypeOverride = XCB_ATOM_NONE;
    xcb_atom_t manager = XCB_ATOM_NONE;
    xcb_atom_t netActiveWindow = XCB_ATOM_NONE;
    xcb_atom_t netClientList = XCB_ATOM_NONE;
    xcb_atom_t netClientListStacking = XCB_ATOM_NONE;
    xcb_atom_t netCurrentDesktop = XCB_ATOM_NONE;
    xcb_atom_t netDesktopGeometry = XCB_ATOM_NONE;
    xcb_atom_t netFrameExtents = XCB_ATOM_NONE;
    xcb_atom_t netMoveresizeWindow = XCB_ATOM_NONE;
    xcb_atom_t netRestackWindow = XCB_ATOM_NONE;
    xcb_atom_t netSupported = XCB_ATOM_NONE;
    xcb_atom_t netSupportingWmCheck = XCB_ATOM_NONE;
    xcb_atom_t netSystemTrayColors = XCB_ATOM_NONE;
    xcb_atom_t netSystemTrayOpcode = XCB_ATOM_NONE;
    xcb_atom_t netSystemTrayVisual = XCB_ATOM_NONE;
    xcb_atom_t netWmBypassCompositor = XCB_ATOM_NONE;
    xcb_atom_t netWmDesktop = XCB_ATOM_NONE;
    xcb_atom_t netWmIcon = XCB_ATOM_NONE;
    xcb_atom_t netWmName = XCB_ATOM_NONE;
    xcb_atom_t netWmPid = XCB_ATOM_NONE;
    xcb_atom_t netWmState = XCB_ATOM_NONE;
    xcb_atom_t netWmStateFullscreen = XCB_ATOM_NONE;
    xcb_atom_t netWmStateHidden = XCB_ATOM_NONE;
    xcb_atom_t netWmStateMaximizedHorz = XCB_ATOM_NONE;
    xcb_atom_t netWmStateMaximizedVert = XCB_ATOM_NONE;
    xcb_atom_t netWmStateShaded = XCB_ATOM_NONE;
    xcb_atom_t netWmStateSkipTaskbar = XCB_ATOM_NONE;
    xcb_atom_t netWmStrut = XCB_ATOM_NONE;
    xcb_atom_t netWmStrutPartial = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowType = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowTypeDesktop = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowTypeDnd = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowTypeDock = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowTypeNormal = XCB_ATOM_NONE;
    xcb_atom_t netWorkarea = XCB_ATOM_NONE;
    xcb_atom_t utf8String = XCB_ATOM_NONE;
    xcb_atom_t wmClientLeader = XCB_ATOM_NONE;
    xcb_atom_t wmState = XCB_ATOM_NONE;
    xcb_atom_t xembedInfo = XCB_ATOM_NONE;
    xcb_atom_t xsettingsSettings = XCB_ATOM_NONE;
    xcb_atom_t edid = XCB_ATOM_NONE;
};

using AtomName = std::pair<xcb_atom_t Atoms::*, std::string_view>;

inline constexpr std::array atomNames{
    AtomName{&Atoms::comptonShadow, "_COMPTON_SHADOW"},
    AtomName{&Atoms::gtkApplicationId, "_GTK_APPLICATION_ID"},
    AtomName{&Atoms::gtkFrameExtents, "_GTK_FRAME_EXTENTS"},
    AtomName{&Atoms::kartoAgent, "_KARTO_AGENT"},
    AtomName{&Atoms::kdeNetWmDesktopFile, "_KDE_NET_WM_DESKTOP_FILE"},
    AtomName{&Atoms::kdeNetWmWindowTypeOverride, "_KDE_NET_WM_WINDOW_TYPE_OVERRIDE"},
    AtomName{&Atoms::manager, "MANAGER"},
    AtomName{&Atoms::netActiveWindow, "_NET_ACTIVE_WINDOW"},
    AtomName{&Atoms::netClientList, "_NET_CLIENT_LIST"},
    AtomName{&Atoms::netClientListStacking, "_NET_CLIENT_LIST_STACKING"},
    AtomName{&Atoms::netCurrentDesktop, "_NET_CURRENT_DESKTOP"},
    AtomName{&Atoms::netDesktopGeometry, "_NET_DESKTOP_GEOMETRY"},
    AtomName{&Atoms::netFrameExtents, "_NET_FRAME_EXTENTS"},
    AtomName{&Atoms::netMoveresizeWindow, "_NET_MOVERESIZE_WINDOW"},
    AtomName{&Atoms::netRestackWindow, "_NET_RESTACK_WINDOW"},
    AtomName{&Atoms::netSupported, "_NET_SUPPORTED"},
    AtomName{&Atoms::netSupportingWmCheck, "_NET_SUPPORTING_WM_CHECK"},
    AtomName{&Atoms::netSystemTrayColors, "_NET_SYSTEM_TRAY_COLORS"},
    AtomName{&Atoms::netSystemTrayOpcode, "_NET_SYSTEM_TRAY_OPCODE"},
    AtomName{&Atoms::netSystemTrayVisual, "_NET_SYSTEM_TRAY_VISUAL"},
    AtomName{&Atoms::netWmBypassCompositor, "_NET_WM_BYPASS_COMPOSITOR"},
    AtomName{&Atoms::netWmDesktop, "_NET_WM_DESKTOP"},
    AtomName{&Atoms::netWmIcon, "_NET_WM_ICON"},
    AtomName{&Atoms::netWmName, "_NET_WM_NAME"},
    AtomName{&Atoms::netWmPid, "_NET_WM_PID"},
    AtomName{&Atoms::netWmState, "_NET_WM_STATE"},
    AtomName{&Atoms::netWmStateFullscreen, "_NET_WM_STATE_FULLSCREEN"},
    AtomName{&Atoms::netWmStateHidden, "_NET_WM_STATE_HIDDEN"},
    AtomName{&Atoms::netWmStateMaximizedHorz, "_NET_WM_STATE_MAXIMIZED_HORZ"},
    AtomName{&Atoms::netWmStateMaximizedVert, "_NET_WM_STATE_MAXIMIZED_VERT"},
    AtomName{&Atoms::netWmStateShaded, "_NET_WM_STATE_SHADED"},
    AtomName{&Atoms::netWmStateSkipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR"},
    AtomName{&Atoms::netWmStrut, "_NET_WM_STRUT"},
    AtomName{&Atoms::netWmStrutPartial, "_NET_WM_STRUT_PARTIAL"},
    AtomName{&Atoms::netWmWindowType, "_NET_WM_WINDOW_TYPE"},
    AtomName{&Atoms::netWmWindowTypeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP"},
    AtomName{&Atoms::netWmWindowTypeDnd, "_NET_WM_WINDOW_TYPE_DND"},
    AtomName{&Atoms::netWmWindowTypeDock, "_NET_WM_WINDOW_TYPE_DOCK"},
    AtomName{&Atoms::netWmWindowTypeNormal, "_NET_WM_WINDOW_TYPE_NORMAL"},
    AtomName{&Atoms::netWorkarea, "_NET_WORKAREA"},
    AtomName{&Atoms::utf8String, "UTF8_STRING"},
    AtomName{&Atoms::wmClientLeader, "WM_CLIENT_LEADER"},
    AtomName{&Atoms::wmState, "WM_STATE"},
    AtomName{&Atoms::xembedInfo, "_XEMBED_INFO"},
    AtomName{&Atoms::xsettingsSettings, "_XSETTINGS_SETTINGS"},
    AtomName{&Atoms::edid, "EDID"},
};

} // namespace karto::x11
