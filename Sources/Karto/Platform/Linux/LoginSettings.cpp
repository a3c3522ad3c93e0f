#include "Karto/Platform/Linux/LoginSettings.h"

#include "Karto/Platform/Linux/CurrentDesktop.h"
#include "Karto/Platform/Linux/Programs.h"

#include <string_view>
#include <vector>

namespace karto {

namespace {

struct Place {
    // As XDG_CURRENT_DESKTOP names it.
    std::string_view desktop;
    ProgramCall call;
};

const std::vector<Place>& places() {
    static const std::vector<Place> all{
        {.desktop = "XFCE", .call = {.name = "xfce4-session-settings", .arguments = {}}},
        {.desktop = "KDE", .call = {.name = "systemsettings", .arguments = {"kcm_autostart"}}},
        {.desktop = "KDE", .call = {.name = "systemsettings5", .arguments = {"kcm_autostart"}}},
        {.desktop = "GNOME", .call = {.name = "gnome-tweaks", .arguments = {}}},
        {.desktop = "GNOME", .call = {.name = "gnome-session-properties", .arguments = {}}},
        {.desktop = "Unity", .call = {.name = "gnome-session-properties", .arguments = {}}},
        {.desktop = "MATE", .call = {.name = "mate-session-properties", .arguments = {}}},
        {.desktop = "X-Cinnamon", .call = {.name = "cinnamon-settings", .arguments = {"startup"}}},
        {.desktop = "LXQt", .call = {.name = "lxqt-config-session", .arguments = {}}},
        {.desktop = "LXDE", .call = {.name = "lxsession-edit", .arguments = {}}},
        {.desktop = "Budgie", .call = {.name = "budgie-desktop-settings", .arguments = {}}},
        {.desktop = "Pantheon", .call = {.name = "io.elementary.settings", .arguments = {}}},
        {.desktop = "Deepin", .call = {.name = "dde-control-center", .arguments = {}}},
    };
    return all;
}

} // namespace

void openLoginSettings(const std::string& autostartFolder) {
    for (const auto& desktop : currentDesktopNames()) {
        for (const auto& place : places()) {
            if (place.desktop == desktop && startProgram(place.call)) {
                return;
            }
        }
    }
    for (const auto& place : places()) {
        if (startProgram(place.call)) {
            return;
        }
    }
    startProgram({.name = "xdg-open", .arguments = {autostartFolder}});
}

} // namespace karto
