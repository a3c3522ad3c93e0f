#include "Karto/Platform/X11/Displays/WorkArea.h"

#include <gmock/gmock.h>

namespace karto::x11 {

namespace {

using ::testing::ElementsAre;

constexpr Size wide{.width = 3000, .height = 1200};
// Side by side, the right one lower and shorter.
constexpr Rect leftMonitor{0, 0, 1920, 1200};
constexpr Rect rightMonitor{1920, 100, 1080, 1000};

std::vector<Rect> leftOf(const std::vector<std::uint32_t>& partial,
                         const std::vector<std::uint32_t>& plain = {}) {
    const auto bands = struts(partial, plain, wide);
    return {visibleFrame(leftMonitor, wide, bands), visibleFrame(rightMonitor, wide, bands)};
}

// Of unequal height, as a laptop beside an upright display: an L.
namespace corner {

constexpr Size desktop{.width = 1880, .height = 1024};
constexpr Rect root{.width = 1880, .height = 1024};
constexpr std::array monitors{Rect{0, 0, 1280, 800}, Rect{1280, 0, 600, 1024}};

// A panel along an edge of a monitor.
struct Panel {
    std::string name;
    std::size_t monitor = 0;
    Edge edge = Edge::left;
    Rect place;

    [[nodiscard]] Strut band() const {
        return {.edge = edge,
                .depth = inset(place, edge, desktop) + depthOf(place, edge),
                .span = spanOf(place, edge)};
    }
};

const std::vector<Panel> panels{
    {"left of Studio", 0, Edge::left, {0, 0, 30, 800}},
    {"top of Studio", 0, Edge::top, {0, 0, 1280, 30}},
    {"right of Studio", 0, Edge::right, {1250, 0, 30, 800}},
    {"bottom of Studio", 0, Edge::bottom, {0, 770, 1280, 30}},
    {"left of Tower", 1, Edge::left, {1280, 0, 30, 1024}},
    {"top of Tower", 1, Edge::top, {1280, 0, 600, 30}},
    {"right of Tower", 1, Edge::right, {1850, 0, 30, 1024}},
    {"bottom of Tower", 1, Edge::bottom, {1280, 994, 600, 30}},
};

Rect without(Rect rect, Edge edge, double depth) {
    switch (edge) {
    case Edge::left: rect.x += depth; [[fallthrough]];
    case Edge::right: rect.width -= depth; break;
    case Edge::top: rect.y += depth; [[fallthrough]];
    case Edge::bottom: rect.height -= depth; break;
    }
    return rect;
}

// The monitors that reach as far out there as the desktop.
std::vector<std::size_t> outermostAt(Edge edge) {
    switch (edge) {
    case Edge::left: return {0};
    case Edge::top: return {0, 1};
    default: return {1};
    }
}

// The monitors, some of them without a band of 30 pixels at that edge.
std::vector<Rect> monitorsWithout(const std::vector<std::size_t>& cut, Edge edge) {
    std::vector<Rect> result(monitors.begin(), monitors.end());
    for (const auto index : cut) {
        result[index] = without(result[index], edge, 30);
    }
    return result;
}

std::vector<Rect> visible(const std::vector<Strut>& struts, const std::vector<Strut>& own,
                          const std::optional<Rect>& whole, const std::vector<Rect>& byMonitor = {}) {
    return visibleFrames(monitors, desktop, struts, own, {.whole = whole, .byMonitor = byMonitor});
}

const std::vector<Rect> untouched(monitors.begin(), monitors.end());

} // namespace corner

} // namespace

TEST(Struts, countWhereTheirInnerEdgeLies) {
    // A panel at the bottom of the left monitor; the right one ends 100 pixels above.
    EXPECT_THAT(leftOf({0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1919}),
                ElementsAre(Rect{0, 0, 1920, 1160}, rightMonitor));
    // The same, reserved over the whole width by the older property.
    EXPECT_THAT(leftOf({}, {0, 0, 0, 40}), ElementsAre(Rect{0, 0, 1920, 1160}, rightMonitor));
    // A panel at the top of the right monitor, measured from the top of the desktop.
    EXPECT_THAT(leftOf({0, 0, 130, 0, 0, 0, 0, 0, 1920, 2999, 0, 0}),
                ElementsAre(leftMonitor, Rect{1920, 130, 1080, 970}));
    // One at the right monitor's left side reaches across the left monitor, which stays whole.
    EXPECT_THAT(leftOf({1980, 0, 0, 0, 100, 1099, 0, 0, 0, 0, 0, 0}),
                ElementsAre(leftMonitor, Rect{1980, 100, 1020, 1000}));
    // Beside the monitor's range, exactly at its edge, beyond the desktop, too short to be a strut.
    EXPECT_THAT(leftOf({0, 60, 0, 0, 0, 0, 0, 99, 0, 0, 0, 0}), ElementsAre(leftMonitor, rightMonitor));
    EXPECT_THAT(leftOf({1920, 0, 0, 100, 0, 1199, 0, 0, 0, 0, 1920, 2999}),
                ElementsAre(leftMonitor, rightMonitor));
    EXPECT_THAT(leftOf({0, 0, 0, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0, 0, 0xFFFFFFFF}, {9, 9, 9}),
                ElementsAre(leftMonitor, rightMonitor));
}

TEST(Struts, addUpAndLeaveAMonitorWholeThatTheyWouldCover) {
    const std::vector<Strut> bands{{.edge = Edge::left, .depth = 50, .span = {.from = 0, .to = 1200}},
                                   {.edge = Edge::left, .depth = 70, .span = {.from = 0, .to = 1200}},
                                   {.edge = Edge::top, .depth = 30, .span = {.from = 0, .to = 1920}}};
    EXPECT_EQ(visibleFrame(leftMonitor, wide, bands), (Rect{70, 30, 1850, 1170}));
    const std::vector<Strut> crossing{{.edge = Edge::top, .depth = 700, .span = {.from = 0, .to = 1920}},
                                      {.edge = Edge::bottom, .depth = 600, .span = {.from = 0, .to = 1920}}};
    EXPECT_EQ(visibleFrame(leftMonitor, wide, crossing), leftMonitor);
}

TEST(VisibleFrames, endWherePanelsBeginAtEveryEdgeOfAnL) {
    using namespace corner;
    for (const Panel& panel : panels) {
        SCOPED_TRACE(panel.name);
        const Strut band = panel.band();
        const auto wanted = monitorsWithout({panel.monitor}, panel.edge);
        // Most managers take the strut from the whole desktop, some declare less, a few nothing.
        const Rect byStrut = without(root, panel.edge, band.depth);
        const Rect byThickness = without(root, panel.edge, 30);
        for (const auto& declared : {std::optional<Rect>(), std::optional(root), std::optional(byStrut)}) {
            EXPECT_EQ(visible({band}, {}, declared), wanted);
        }
        EXPECT_EQ(visible({band}, {}, byStrut, wanted), wanted);
        EXPECT_EQ(visible({}, {}, byStrut, wanted), wanted);
        // A panel of the manager's own is found by its window.
        for (const Rect& declared : {byStrut, byThickness}) {
            EXPECT_EQ(panelBand(panel.place, monitors, desktop, declared), band);
            EXPECT_EQ(visible({}, {band}, declared), wanted);
        }
        EXPECT_EQ(panelBand(panel.place, monitors, desktop, root), std::nullopt);
        // Without any window it is looked for at the outer edge.
        EXPECT_EQ(visible({}, {}, byThickness), monitorsWithout(outermostAt(panel.edge), panel.edge));
    }
}

TEST(VisibleFrames, knowStrutsAndPanelsOfTheManagerSideBySide) {
    using namespace corner;
    const Strut strut = panels[7].band();
    // The one declares the sum, as if the strut were measured from the first monitor.
    const Strut own{.edge = Edge::bottom, .depth = 250, .span = {.from = 0, .to = 1280}};
    EXPECT_THAT(visible({strut}, {own}, Rect{0, 0, 1880, 770}),
                ElementsAre(Rect{0, 0, 1280, 774}, Rect{1280, 0, 600, 994}));
    // A margin below a strut.
    EXPECT_THAT(visible({strut}, {}, Rect{0, 0, 1880, 980}),
                ElementsAre(monitors[0], Rect{1280, 0, 600, 980}));
}

TEST(VisibleFrames, ignoreAreasThatMakeNoSense) {
    using namespace corner;
    const Strut left = panels[4].band();
    const auto besideIt = monitorsWithout({1}, Edge::left);
    // Half of the desktop, where a strut reaches in farther than that.
    EXPECT_EQ(visible({left}, {}, Rect{940, 0, 940, 1024}), besideIt);
    // One monitor, or what both have in common, or a desktop that was smaller.
    for (const Rect& area :
         {monitors[0], monitors[1], Rect{.width = 1880, .height = 800}, Rect{.width = 640, .height = 480}}) {
        EXPECT_EQ(visible({}, {}, area), untouched);
        EXPECT_EQ(visible({}, {}, std::nullopt, {area}), untouched);
    }
    // A strut at the right of the first monitor, taken from the second one, too; and one larger than a
    // monitor.
    EXPECT_EQ(visible({panels[2].band()}, {}, Rect{.width = 1250, .height = 1024},
                      {panels[2].place, {1280, 800, 600, 224}}),
              monitorsWithout({0}, Edge::right));
}

TEST(VisibleFrames, takeNoOtherWindowForAPanel) {
    using namespace corner;
    const Rect declared{40, 0, 1800, 774};
    for (const Rect& window : {Rect{0, 774, 1280, 25},    // not at the edge
                               Rect{0, 0, 1280, 30},      // where nothing is taken
                               Rect{0, 0, 1, 1024},       // a helper
                               Rect{0, 400, 1280, 400},   // too thick
                               Rect{0, 0, 60, 800},       // thicker than what is taken
                               Rect{300, 1000, 200, 24}}) // where no monitor is
    {
        EXPECT_EQ(panelBand(window, monitors, desktop, declared), std::nullopt)
            << window.x << " " << window.y;
    }
}

TEST(WorkAreas, areReadByDesktopWithoutNonsense) {
    using namespace corner;
    EXPECT_THAT(areas(std::vector<std::uint32_t>{0, 0, 1880, 1000, 0, 0, 0, 1024, 0, 0, 1881, 1024,
                                                 0xFFFFFFFF, 0, 1880, 1024, 1, 2},
                      desktop),
                ElementsAre(Rect{0, 0, 1880, 1000}, std::nullopt, std::nullopt, std::nullopt));
}

} // namespace karto::x11
