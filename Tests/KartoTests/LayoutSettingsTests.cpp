#include "Karto/Settings/LayoutSettings.h"

#include "Karto/Settings/DisplayMap.h"
#include "Karto/Settings/LayoutRows.h"
#include "Karto/Settings/OverlaySettings.h"
#include "Support/FixedConfig.h"
#include "Support/MemoryKeyEvents.h"
#include "Support/Trees.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const DisplayInfo wide{.name = "Wide", .frame = rectAt(0, 0, 2000, 1000)};
const DisplayInfo tall{.name = "Tall", .frame = rectAt(2000, -500, 1000, 2000)};
const DisplayInfo nameless{.name = "", .frame = rectAt(-400, 0, 400, 400)};

class LayoutSettingsTest : public ::testing::Test {
protected:
    LayoutSettingsTest() { connect({wide, tall, nameless}); }

    void connect(std::vector<DisplayInfo> displays) {
        model.update([&](SettingsModel::Status& status) { status.displays = std::move(displays); });
    }

    [[nodiscard]] const KartoConfig& config() const { return model.editor().config(); }

    // For example "1 Wide, 2* Tall (away)", with pins marked by a star.
    [[nodiscard]] std::string ring() const {
        std::string text;
        for (const auto& row : ringOrderRows(config(), model.status().displays)) {
            text += fmt::format("{}{}{} {}{}", text.empty() ? "" : ", ", row.order, row.isPinned ? "*" : "",
                                nameText(row.display), row.isConnected ? "" : " (away)");
        }
        return text;
    }

    MemoryKeyEvents keys;
    SettingsModel model{LayoutEditor(configWith({landscape("Wide", columns(0.333, zone(), zone())),
                                                 portrait("Tall", zone()), landscape("", zone())})),
                        keys};
};

} // namespace

TEST_F(LayoutSettingsTest, zonesOfADisplayAreDescribedAsFractions) {
    std::vector<std::string> texts;
    for (const auto& row : zoneRows(config(), wide)) {
        texts.push_back(fmt::format("{}: {}", row.order, rectText(row.rect, ".")));
        EXPECT_TRUE(row.canRemove);
    }
    EXPECT_THAT(texts, ElementsAre("1: x 0   y 0   w 0.333   h 1", "2: x 0.333   y 0   w 0.667   h 1"));
    EXPECT_FALSE(zoneRows(config(), tall).front().canRemove);
    EXPECT_EQ(rectText({.x = 0.5, .y = 1.0 / 3, .w = 0.25, .h = 2.0 / 3}, ","),
              "x 0,5   y 0,333   w 0,25   h 0,667");
    // A layout for the other orientation of the display is not its own.
    EXPECT_THAT(zoneRows(config(), {.name = "Wide", .frame = tall.frame}), IsEmpty());
}

TEST_F(LayoutSettingsTest, rowsOfTheRingAreMovedAndPinned) {
    EXPECT_EQ(ring(), "1 Wide, 2 Wide, 3 Tall, 4 (no name)");
    const auto rows = [this] { return ringOrderRows(config(), model.status().displays); };
    const auto move = [&](int from, int to) {
        model.edit([&](LayoutEditor& editor) { moveRow(rows(), from, to, editor); });
    };
    move(1, 1);
    move(1, 2);
    EXPECT_FALSE(model.editor().canUndo());
    move(3, 0);
    EXPECT_EQ(ring(), "1* (no name), 2 Wide, 3 Wide, 4 Tall");
    move(0, 3);
    EXPECT_EQ(ring(), "1 Wide, 2 Wide, 3* (no name), 4 Tall");
    const auto toggle = [&](std::size_t index) {
        model.edit([&](LayoutEditor& editor) { togglePin(rows()[index], editor); });
    };
    EXPECT_EQ(pinHelp(rows()[2]), "Number 3 is fixed. Click to let it follow the layout again.");
    toggle(2);
    EXPECT_EQ(ring(), "1 Wide, 2 Wide, 3 Tall, 4 (no name)");
    EXPECT_EQ(pinHelp(rows()[1]), "Number 2 follows the layout. Click to fix it here.");
    toggle(1);
    EXPECT_EQ(ring(), "1 Wide, 2* Wide, 3 Tall, 4 (no name)");
    connect({wide});
    EXPECT_EQ(ring(), "1 Wide, 2* Wide, 3 Tall (away), 4 (no name) (away)");
}

TEST_F(LayoutSettingsTest, theMapShowsDisplaysInProportionAndInTheMiddle) {
    std::vector<std::string> boxes;
    for (const auto& box : displayMap(model.status().displays, {.width = 680, .height = 160})) {
        boxes.push_back(fmt::format("{} {:.0f} {:.0f} {:.0f} {:.0f}", box.text, box.frame.x, box.frame.y,
                                    box.frame.width, box.frame.height));
    }
    // Together 3400 by 2000, so 0.08 of their size and 272 of 680 wide.
    EXPECT_THAT(boxes,
                ElementsAre("no name — unusable 204 40 32 32", "Wide 236 40 160 80", "Tall 396 0 80 160"));
    EXPECT_THAT(displayMap({}, {.width = 680, .height = 160}), IsEmpty());
}

TEST_F(LayoutSettingsTest, theSelectionFollowsItsDisplay) {
    select(wide, model);
    model.selectZone(NodePath{{Branch::first}});
    auto resized = wide;
    resized.frame.width = 1500;
    connect({resized, tall});
    reconcileSelection(model);
    EXPECT_EQ(model.selectedDisplay(), resized);
    EXPECT_EQ(model.selectedZoneNumber(), 1);
    // Turned on its side it is another display as far as layouts go.
    resized.frame = rectAt(0, 0, 1000, 2000);
    connect({resized, tall});
    reconcileSelection(model);
    EXPECT_FALSE(model.selectedDisplay());
    EXPECT_FALSE(model.selectedZonePath());
}

TEST_F(LayoutSettingsTest, aPresetReplacesTheLayoutOfTheSelectedDisplay) {
    const auto& thirds = LayoutPresets::all(Orientation::portrait).at(1);
    LayoutSettings::apply(thirds, model);
    EXPECT_FALSE(model.editor().canUndo());
    select(tall, model);
    model.selectZone(NodePath{});
    LayoutSettings::apply(thirds, model);
    EXPECT_EQ(zoneRows(config(), tall).size(), 3U);
    EXPECT_FALSE(model.selectedZonePath());
}

TEST_F(LayoutSettingsTest, startingOverGivesEveryDisplayThePresetOfItsOrientation) {
    using LayoutSettings::Content;
    model.replaceEditor(LayoutEditor::empty("default"));
    model.update([](SettingsModel::Status& status) {
        status.loadError = "old";
        status.isLegacyFormat = true;
    });
    EXPECT_EQ(LayoutSettings::content(model.status()), Content::legacyFormat);
    connect({wide, tall});
    const auto& presets = LayoutPresets::all(Orientation::landscape);
    LayoutSettings::startOver(presets.at(2), model);
    EXPECT_EQ(ring(), "1 Wide, 2 Wide");
    EXPECT_EQ(LayoutSettings::content(model.status()), Content::editor);
    LayoutSettings::startOver(presets.at(0), model);
    EXPECT_EQ(ring(), "1 Wide, 2 Wide, 3 Tall, 4 Tall");
    model.update([](SettingsModel::Status& status) { status.loadError = "broken"; });
    EXPECT_EQ(LayoutSettings::content(model.status()), Content::unreadableFile);
}

TEST(OverlaySettings, slidersSayTheirValueAndMoveWithoutUndoSteps) {
    LayoutEditor editor(configWith({}));
    std::vector<std::string> texts;
    for (const auto& slider : OverlaySettings::sliders) {
        OverlaySettings::set(slider, slider.limits.upper, editor);
        texts.push_back(slider.valueText(OverlaySettings::appearance(editor.config()).*slider.field));
    }
    EXPECT_THAT(texts, ElementsAre("2.00 s", "100%", "240 pt"));
    OverlaySettings::setColor({.red = 1, .green = 0.5, .blue = 0}, editor);
    EXPECT_EQ(editor.config().overlay->color, "#FF8000");
    EXPECT_FALSE(editor.canUndo());
    editor.commitOverlayAppearanceDrag();
    editor.undo();
    EXPECT_FALSE(OverlaySettings::canReset(editor.config()));
}

} // namespace karto::testing
