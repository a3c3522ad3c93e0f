#include "KartoCore/ZoneResolver.h"

#include "KartoCore/Config.h"
#include "KartoCore/DisplayForWindow.h"
#include "KartoCore/DisplayMapOrdering.h"
#include "Support/Trees.h"

#include <gtest/gtest.h>

namespace karto {

namespace {

using testing::columns, testing::landscape, testing::portrait, testing::rectAt, testing::rows, testing::zone;

constexpr Rect wide{100, 50, 1000, 800};
constexpr Rect tall{-800, 0, 800, 1000};

TEST(ZoneResolver, onlyLayoutsOfConnectedDisplaysResolveAndKeepTheirNumbers) {
    const std::vector layouts{landscape("A", columns(0.5, zone(), columns(0.5, zone(), zone()))),
                              landscape("B", rows(0.25, zone(5), zone())), landscape("", zone())};
    const std::vector<DisplayInfo> displays{
        {.name = "", .frame = wide}, {.name = "A", .frame = tall}, {.name = "B", .frame = wide}};
    const std::vector<ResolvedZone> expected{
        {.order = 4,
         .display = "B",
         .orientation = Orientation::landscape,
         .rect = rectAt(100, 250, 1000, 600)},
        {.order = 5,
         .display = "B",
         .orientation = Orientation::landscape,
         .rect = rectAt(100, 50, 1000, 200)},
    };
    EXPECT_EQ(testing::ringOf(layouts, displays), expected);
}

TEST(ZoneResolver, theFirstOfSeveralEqualDisplaysTakesTheZonesAndTheCollisionIsReported) {
    KartoConfig config;
    config.displays = {landscape("B", zone()), landscape("A", zone()), portrait("A", zone())};
    std::vector<DisplayInfo> displays;
    for (const std::string_view name : {"B", "A", "", "a"}) {
        for (Rect frame : {wide, tall, wide, tall}) {
            frame.x += static_cast<double>(displays.size());
            displays.push_back({.name = std::string(name), .frame = frame});
        }
    }
    EXPECT_EQ(ZoneResolver::resolve(config, displays).front().rect, wide); // of "B", given first
    const std::vector<DisplayCollision> expected{
        {.name = "A", .orientation = Orientation::landscape, .count = 2},
        {.name = "A", .orientation = Orientation::portrait, .count = 2},
        {.name = "B", .orientation = Orientation::landscape, .count = 2}};
    EXPECT_EQ(ZoneResolver::collisions(config, displays), expected);
}

TEST(Displays, aWindowBelongsToTheDisplayThatItCoversMore) {
    const std::vector<DisplayInfo> displays{{.name = "left", .frame = rectAt(0, 0, 100, 100)},
                                            {.name = "right", .frame = rectAt(100, 0, 100, 100)}};
    EXPECT_EQ(DisplayForWindow::holding({60, 0, 100, 10}, displays), displays[1]);
    EXPECT_EQ(DisplayForWindow::holding({50, 0, 100, 10}, displays), displays[0]);
    EXPECT_FALSE(DisplayForWindow::holding({0, 100, 100, 10}, displays));
}

TEST(Displays, aMapDrawsThemLeftToRightThenTopToBottom) {
    std::vector<DisplayInfo> displays;
    for (const auto& [x, y] : {std::pair{1920, 0}, {0, 0}, {0, -1080}, {0, 0}}) {
        displays.push_back({.name = std::to_string(displays.size()), .frame = rectAt(x, y, 1920, 1080)});
    }
    const std::vector expected{displays[2], displays[1], displays[3], displays[0]};
    EXPECT_EQ(DisplayMapOrdering::sorted(displays), expected);
}

} // namespace

} // namespace karto
