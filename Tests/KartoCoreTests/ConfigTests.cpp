#include "KartoCore/Config.h"

#include "Support/Trees.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace karto {

namespace {

using Keys = std::map<std::string, std::string>;
using Change = std::function<void(KartoConfig&)>;

using testing::columns, testing::landscape, testing::portrait, testing::zone;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

KartoConfig usable() {
    return {.profileName = "Home",
            .displays = {landscape("Studio", columns(0.5, {}, {})), portrait("Studio", {})},
            .hotkeys = HotkeysConfig{.modifiers = {"control", "option"}, .keys = Keys{{"tidy", "y"}}},
            .overlay = OverlayConfig{
                .delay = 0.0, .backgroundOpacity = -0.0, .numberSize = 240.0, .color = "#00ff00"}};
}

void setKeys(KartoConfig& config, Keys keys) { config.hotkeys->keys = std::move(keys); }

void setSplit(KartoConfig& config, double at) {
    config.displays[0].root = columns(0.5, {}, columns(at, {}, {}));
}

TEST(ConfigValidation, saysWhatMakesAConfigurationUnusable) {
    const std::string outOfBounds = "Studio has a split position out of bounds";
    const std::string onlyOne =
        "the hotkeys section lists only one modifier — held on its own it takes ordinary "
        "keys away from every application; list at least two";
    const std::vector<std::pair<Change, std::string>> table{
        {[](auto& c) { c.displays.clear(); }, "config has no displays"},
        {[](auto& c) { c.displays[1].name = ""; }, "a display has no name"},
        {[](auto& c) { c.displays.push_back(portrait("Studio", columns(7, {}, {}))); },
         "two displays are both \"Studio\" (portrait) — a zone can only bind to one of them"},
        {[](auto& c) { setSplit(c, 0.009); }, outOfBounds},
        {[](auto& c) { setSplit(c, 0.991); }, outOfBounds},
        {[](auto& c) { setSplit(c, notANumber); }, outOfBounds},
        {[](auto& c) { c.hotkeys->modifiers = {}; }, "the hotkeys section lists no modifiers"},
        {[](auto& c) { c.hotkeys->modifiers = {"command", "Shift"}; },
         "unknown modifier \"Shift\" — use shift, command, control or option"},
        {[](auto& c) { c.hotkeys->modifiers = {"option", "option"}; }, onlyOne},
        {[](auto& c) { setKeys(c, {{"Tidy", "5"}, {"tidy", "5"}}); },
         "unknown command \"Tidy\" in the hotkey keys"},
        {[](auto& c) { setKeys(c, {{"tidy", "5"}}); },
         "tidy cannot use a digit: digits 1-9 move a window to the zone with that number"},
        {[](auto& c) { setKeys(c, {{"tidy", "F"}}); },
         "\"F\" is not a key name — tidy needs a letter, an arrow, space, return, tab or escape"},
        {[](auto& c) { setKeys(c, {{"tidy", "f"}}); },
         "fillDisplay and tidy are both on \"f\" — one of them would never fire"},
        {[](auto& c) {
             setKeys(c, {{"tidy", "z"}, {"nextZone", "z"}, {"expandZone", "z"}, {"snapToZone", "f"}});
         },
         "fillDisplay and snapToZone are both on \"f\" — one of them would never fire"},
        {[](auto& c) { setKeys(c, {{"tidy", "z"}, {"nextZone", "z"}, {"expandZone", "z"}}); },
         "expandZone and nextZone and tidy are both on \"z\" — one of them would never fire"},
        {[](auto& c) { c.overlay->delay = 2.5; }, "overlay delay is 2.5, outside the allowed range"},
        {[](auto& c) { c.overlay->backgroundOpacity = notANumber; },
         "overlay backgroundOpacity is nan, outside the allowed range"},
        {[](auto& c) { c.overlay->numberSize = 300; },
         "overlay numberSize is 300.0, outside the allowed range"},
        {[](auto& c) { c.overlay->color = "#12345"; }, "overlay color \"#12345\" is not a #RRGGBB colour"},
        // The first problem in the order of the sections is the one that is told.
        {[](auto& c) { c.displays[0].name = "", setSplit(c, 0), c.hotkeys->modifiers = {}; },
         "a display has no name"},
        {[](auto& c) { setSplit(c, 0), c.displays[1].name = "", c.hotkeys->modifiers = {}; }, outOfBounds},
        {[](auto& c) { c.hotkeys->modifiers = {"option"}, setKeys(c, {{"tidy", "5"}}); }, onlyOne},
        {[](auto& c) { setKeys(c, {{"x", ""}}), c.overlay->delay = -1; },
         "unknown command \"x\" in the hotkey keys"},
        {[](auto& c) {
             c.overlay = OverlayConfig{.delay = -1, .backgroundOpacity = -1, .numberSize = 0, .color = ""};
         },
         "overlay delay is -1.0, outside the allowed range"},
    };
    for (const auto& [damage, expected] : table) {
        KartoConfig config = usable();
        damage(config);
        const auto valid = config.validate();
        ASSERT_FALSE(valid) << expected;
        EXPECT_EQ(message(valid.error()), expected);
    }
}

TEST(ConfigValidation, limitsThemselvesAreAllowed) {
    for (const double at : {0.01, 0.99}) {
        KartoConfig config = usable();
        setSplit(config, at);
        setKeys(config, {{"tidy", "f"}, {"fillDisplay", "t"}});
        config.displays[0].name = " ";
        config.displays[1].root = zone(-7);
        const auto valid = config.validate();
        EXPECT_TRUE(valid) << message(valid.error());
        config.overlay =
            OverlayConfig{.delay = 2.0, .backgroundOpacity = 1.0, .numberSize = 8.0, .color = {}};
        EXPECT_TRUE(config.validate());
    }
}

TEST(Config, writtenValuesReplaceTheirDefaults) {
    KartoConfig config = usable();
    setKeys(config, {{"tidy", "t"}, {"nextZone", "n"}});
    config.overlay =
        OverlayConfig{.delay = {}, .backgroundOpacity = {}, .numberSize = {}, .color = "#00FF00"};

    CommandKeyMap keys = CommandKey::defaults();
    keys.insert_or_assign(KartoCommand::nextZone, *CommandKey::named("n"));
    EXPECT_EQ(config.commandKeys(), keys);
    EXPECT_TRUE(config.hasCommandKeyOverride(KartoCommand::tidy));
    EXPECT_FALSE(config.hasCommandKeyOverride(KartoCommand::fillDisplay));
    EXPECT_FALSE(config.hasCommandKeyOverride(KartoCommand::cancelCycling));
    EXPECT_EQ(config.modifierSet(), ModifierSet::control | ModifierSet::option);
    EXPECT_EQ(config.overlayAppearance(), (OverlayAppearance{.color = {.red = 0, .green = 1, .blue = 0}}));
    config.hotkeys->modifiers = {};
    EXPECT_EQ(config.modifierSet(), ModifierSet());
    config.hotkeys->modifiers = {"alt"};
    EXPECT_EQ(config.modifierSet().error().name, "alt");
}

TEST(Config, oldFormatIsRecognisedAnywhereInTheText) {
    EXPECT_TRUE(KartoConfig::looksLikeLegacyFormat("# was [[profile.zone]] once"));
    EXPECT_FALSE(KartoConfig::looksLikeLegacyFormat("[[Profile.zone]] [[profile . zone]]"));
}

} // namespace

} // namespace karto
