#pragma once
// The program's one permanent presence on the desktop: a small icon with a menu.

#include "Karto/Platform/Menu.h"
#include "Karto/Platform/Registration.h"
#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/Picture.h"

#include <functional>
#include <string>

namespace karto {

struct StatusItemFace {
    // What a screen reader says, and a hint under the pointer shows.
    std::string accessibleLabel;
    bool hasUpdateMark = false;

    bool operator==(const StatusItemFace&) const = default;
};

struct StatusIconStyle {
    // Pixels of a side; the picture is a square.
    int side = 0;
    // The colour of symbols beside it.
    RGBColor ink = {};
    bool hasUpdateMark = false;
};

class StatusItem {
public:
    using DrawIcon = std::function<Image(const StatusIconStyle&)>;
    using MakeMenu = std::function<Menu()>;

    virtual ~StatusItem() = default;

    // The item is there whenever the desktop has a place for it, as long as the registration lasts; one at a
    // time. The menu is asked for each time that it opens.
    [[nodiscard]] virtual Registration install(DrawIcon drawIcon, MakeMenu makeMenu) = 0;
    virtual void setFace(const StatusItemFace& face) = 0;
    // The menu has other lines than before: one that stands open shows them.
    virtual void updateMenu() = 0;
    // Whether a person can see the item now.
    [[nodiscard]] virtual bool isShown() const = 0;
};

} // namespace karto
