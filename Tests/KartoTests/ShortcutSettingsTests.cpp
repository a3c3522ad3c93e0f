#include "Karto/Settings/ShortcutSettings.h"

#include "Karto/Adapters/KeyCodes.h"
#include "Support/FixedConfig.h"
#include "Support/MemoryKeyEvents.h"

#include <gmock/gmock.h>

namespace karto::testing {

namespace {

using ::testing::Eq;
using ::testing::Optional;

constexpr ModifierFlags nothing{};
constexpr ModifierFlags shift{ModifierBits::shift};
constexpr ModifierFlags control{ModifierBits::control};
constexpr ModifierFlags option{ModifierBits::option};
constexpr ModifierFlags controlAndOption{ModifierBits::control | ModifierBits::option};
constexpr std::uint32_t yKey = 16;
constexpr std::uint32_t tKey = 17;
constexpr std::uint32_t fiveKey = 23;
constexpr std::uint32_t functionKey = 96;

class ShortcutSettingsTest : public ::testing::Test {
protected:
    [[nodiscard]] const KartoConfig& config() const { return model.editor().config(); }

    ShortcutSettings::CommandRow row(const KartoCommand& command) {
        const auto rows = section.commandRows();
        return *std::ranges::find(rows, command, &ShortcutSettings::CommandRow::command);
    }

    MemoryKeyEvents keys;
    SettingsModel model{LayoutEditor(configWith({})), keys};
    int changes = 0;
    ShortcutSettings section{model, [this] { ++changes; }};
};

} // namespace

TEST_F(ShortcutSettingsTest, theLargestCombinationHeldBecomesTheHyperKey) {
    EXPECT_EQ(section.hyperKey().value, ModifierSet::allModifiers.glyphs());
    section.toggleHyperKey();
    EXPECT_EQ(section.hyperKey().value, "Listening…");
    EXPECT_EQ(section.hyperKey().button, "Cancel");
    for (const auto held : {control, controlAndOption, option}) {
        EXPECT_TRUE(keys.hold(held));
        EXPECT_TRUE(keys.press(tKey));
    }
    EXPECT_TRUE(keys.hold(nothing));
    EXPECT_EQ(section.hyperKey().value, (ModifierSet::control | ModifierSet::option).glyphs());
    EXPECT_EQ(section.hyperKey().button, "Record New Combination");
    EXPECT_FALSE(keys.isMonitored());
    model.edit([](LayoutEditor& editor) { editor.undo(); });
    EXPECT_FALSE(config().hotkeys);
}

TEST_F(ShortcutSettingsTest, aSingleModifierIsRefusedUntilTheNextRecording) {
    section.toggleHyperKey();
    keys.hold(shift);
    keys.hold(nothing);
    EXPECT_THAT(
        section.hyperKey().refusal,
        Optional(
            Eq("Hold at least two modifiers — one on its own takes ordinary keys away from every app.")));
    EXPECT_FALSE(model.editor().canUndo());
    section.toggleHyperKey();
    EXPECT_FALSE(section.hyperKey().refusal);
}

TEST_F(ShortcutSettingsTest, whatIsCancelledChangesNothing) {
    const auto escape = [this] { EXPECT_FALSE(keys.press(escapeKeyCode)); };
    const auto focusLost = [this] { model.shortcutRecorder().stop(); };
    const auto cancelHyper = [this] { section.toggleHyperKey(); };
    const auto cancelTidy = [this] { section.toggle(KartoCommand::tidy); };
    for (const auto& end : std::initializer_list<std::function<void()>>{escape, focusLost, cancelHyper}) {
        section.toggleHyperKey();
        keys.hold(controlAndOption);
        end();
        EXPECT_EQ(section.hyperKey().button, "Record New Combination");
    }
    keys.hold(nothing);
    for (const auto& end : std::initializer_list<std::function<void()>>{escape, focusLost, cancelTidy}) {
        section.toggle(KartoCommand::tidy);
        EXPECT_EQ(row(KartoCommand::tidy).value, "Listening…");
        end();
        EXPECT_EQ(row(KartoCommand::tidy).value, "hyper + T");
    }
    EXPECT_FALSE(keys.isMonitored());
    EXPECT_EQ(config(), configWith({}));
}

TEST_F(ShortcutSettingsTest, aKeyIsRecordedWhateverIsHeldWithItAndCanBeReset) {
    EXPECT_FALSE(row(KartoCommand::tidy).canReset);
    section.toggle(KartoCommand::tidy);
    keys.hold(shift);
    EXPECT_FALSE(keys.press(yKey));
    EXPECT_EQ(row(KartoCommand::tidy).value, "hyper + Y");
    EXPECT_TRUE(row(KartoCommand::tidy).canReset);
    section.reset(KartoCommand::tidy);
    EXPECT_EQ(row(KartoCommand::tidy).value, "hyper + T");
    EXPECT_FALSE(row(KartoCommand::tidy).canReset);
}

TEST_F(ShortcutSettingsTest, keysThatNoCommandMayHaveAreRefusedInWords) {
    const std::map<std::optional<std::uint32_t>, std::string> refusals{
        {fiveKey, "Digits 1-9 move a window to the zone with that number."},
        {functionKey, "Letters, arrows, space, return and tab can be command keys."},
        {std::nullopt, "Letters, arrows, space, return and tab can be command keys."},
        {tKey, "Already used by Tidy."},
    };
    for (const auto& [key, refusal] : refusals) {
        section.toggle(KartoCommand::fillDisplay);
        EXPECT_FALSE(row(KartoCommand::fillDisplay).refusal);
        EXPECT_FALSE(keys.press(key));
        EXPECT_THAT(row(KartoCommand::fillDisplay).refusal, Optional(Eq(refusal)));
        EXPECT_FALSE(model.editor().canUndo());
    }
    // Another recording stops the one at hand; its own key is no conflict.
    section.toggle(KartoCommand::nextZone);
    section.toggle(KartoCommand::tidy);
    EXPECT_EQ(row(KartoCommand::nextZone).button, "Record");
    keys.press(tKey);
    EXPECT_FALSE(row(KartoCommand::tidy).refusal);
}

TEST_F(ShortcutSettingsTest, aDefaultKeyThatAnotherCommandHasCannotComeBack) {
    model.edit([](LayoutEditor& editor) {
        editor.setCommandKey(*CommandKey::named("y"), KartoCommand::tidy);
        editor.setCommandKey(*CommandKey::named("t"), KartoCommand::fillDisplay);
    });
    section.reset(KartoCommand::tidy);
    EXPECT_THAT(row(KartoCommand::tidy).refusal, Optional(Eq("Already used by Fill the display.")));
    EXPECT_EQ(row(KartoCommand::tidy).value, "hyper + Y");
}

TEST_F(ShortcutSettingsTest, conflictsAndAnUnreadableFileAreSaid) {
    EXPECT_FALSE(section.digitsConflict());
    model.update([](SettingsModel::Status& status) {
        status.failedCommands = {KartoCommand::tidy, KartoCommand::moveToZone(3),
                                 KartoCommand::moveToZone(1)};
        status.loadError = "broken";
    });
    EXPECT_THAT(section.digitsConflict(), Optional(Eq("1, 3 — Another app is using this combination.")));
    EXPECT_THAT(row(KartoCommand::tidy).conflict, Optional(Eq("Another app is using this combination.")));
    EXPECT_FALSE(row(KartoCommand::nextZone).conflict);
    EXPECT_FALSE(row(KartoCommand::tidy).canRecord);
    EXPECT_TRUE(section.hyperKey().isUnavailable);
    EXPECT_EQ(section.hyperKey().explanation,
              "The combination cannot be changed while the config file cannot be read — see Layout for the "
              "error.");
}

} // namespace karto::testing
