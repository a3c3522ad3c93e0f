#include "Support/WindowKinds.h"

namespace karto::desktop {

const std::vector<WindowKind> windowKinds{
    {.name = "plain"},
    {.name = "borderless"},
    {.name = "dialog"},
    {.name = "maximized"},
    {.name = "client-decorated"},
    {.name = "stepped", .size = WindowKind::Size::upToOneStepShort},
    {.name = "terminal", .size = WindowKind::Size::upToOneStepShort},
    {.name = "minimum",
     .start = {.x = 20, .y = 20, .width = 900, .height = 600},
     .size = WindowKind::Size::neverSmaller},
    {.name = "fixed", .size = WindowKind::Size::itsOwn},
};

Application WindowKind::open(PrivateDesktop& desktop) const {
    if (name == "terminal") {
        return Application::terminal(desktop, name);
    }
    if (name == "client-decorated") {
        return Application::clientDecorated(desktop, name);
    }
    return Application::probe(desktop, name == "maximized" ? "plain" : name, name, start);
}

} // namespace karto::desktop
