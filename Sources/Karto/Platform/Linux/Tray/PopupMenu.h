#pragma once
// Shows a menu for trays that leave that to the program.

#include "Karto/Platform/Menu.h"
#include "KartoCore/Geometry.h"

#include <memory>
#include <optional>

class QMenu;

namespace karto {

class PopupMenu {
public:
    PopupMenu();
    ~PopupMenu();
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu(PopupMenu&&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;
    PopupMenu& operator=(PopupMenu&&) = delete;

    // anchor: what the menu opens beside, in pixels of the screen; absent for the pointer. Requires Qt's
    // application object. Takes the place of a menu that is open.
    void show(const Menu& menu, const std::optional<PixelRect>& anchor = std::nullopt);

private:
    std::unique_ptr<QMenu> menu_;
};

} // namespace karto
