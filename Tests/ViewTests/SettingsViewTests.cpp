// What a screen reader is told of the settings, and what it can do to them.

#include "Karto/Settings/Views/SettingsView.h"

#include "Karto/Adapters/LoginItem.h"
#include "Karto/Adapters/UpdaterService.h"
#include "Karto/Adapters/WindowService.h"
#include "Karto/Settings/Views/Spoken.h"
#include "Support/FixedConfig.h"
#include "Support/ManualUpdater.h"
#include "Support/MemoryCheckLog.h"
#include "Support/MemoryDesktop.h"
#include "Support/MemoryKeyEvents.h"
#include "Support/MemoryLoginItem.h"
#include "Support/Trees.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>

namespace karto::testing {

namespace {

using ::testing::ElementsAre;

class SettingsViewTest : public ::testing::Test {
protected:
    SettingsViewTest() {
        Spoken::introduce();
        model.update([](SettingsModel::Status& status) {
            status.displays = {{.name = "Wide", .frame = rectAt(0, 0, 2000, 1000)}};
        });
        model.selectDisplay(model.status().displays.front());
        view.show();
    }

    // Everything that is seen, from the top down.
    static std::vector<QAccessibleInterface*> within(QAccessibleInterface* root) {
        std::vector<QAccessibleInterface*> all;
        for (int i = 0; i < root->childCount(); ++i) {
            if (auto* child = root->child(i); child != nullptr && !child->state().invisible) {
                all.push_back(child);
                std::ranges::copy(within(child), std::back_inserter(all));
            }
        }
        return all;
    }

    std::vector<QAccessibleInterface*> heard() {
        // What was shown before goes.
        QCoreApplication::sendPostedEvents();
        return within(QAccessible::queryAccessibleInterface(&view));
    }

    QAccessibleInterface* find(QAccessible::Role role, const QString& start) {
        for (auto* each : heard()) {
            if (each->role() == role && nameOf(*each).startsWith(start)) {
                return each;
            }
        }
        throw std::runtime_error("nothing is named " + start.toStdString());
    }

    static QString nameOf(const QAccessibleInterface& heard) { return heard.text(QAccessible::Name); }

    void act(QAccessible::Role role, const QString& start, const QString& action) {
        find(role, start)->actionInterface()->doAction(action);
    }

    std::vector<std::string> ring() {
        std::vector<std::string> names;
        for (auto* row : within(find(QAccessible::List, "Ring order"))) {
            if (row->role() == QAccessible::ListItem) {
                names.push_back(nameOf(*row).toStdString());
            }
        }
        return names;
    }

    MemoryDesktop desktop;
    MemoryKeyEvents keys;
    MemoryLoginItem item;
    ManualUpdater engine;
    MemoryCheckLog log;
    LoginItem loginItem{item};
    UpdaterService updater{engine};
    WindowService windows{desktop};
    SettingsModel model{
        LayoutEditor(configWith({landscape("Wide", columns(0.5, zone(), zone())), portrait("Tall", zone())})),
        keys};
    SettingsView view{model,
                      {.loginItem = loginItem, .updater = updater, .windows = windows, .log = log},
                      {.revert = [] {}, .pickColor = [] {}, .openConfig = [] {}}};
};

} // namespace

TEST_F(SettingsViewTest, whateverHasTheFocusHasARoleANameAndSomethingToDo) {
    for (const auto section : settingsSections) {
        find(QAccessible::ListItem, QString::fromStdString(std::string(title(section))))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
        ASSERT_EQ(model.section(), section);
        for (auto* each : heard()) {
            SCOPED_TRACE(nameOf(*each).toStdString());
            if (each->state().focusable && !each->state().disabled) {
                EXPECT_NE(each->role(), QAccessible::Client);
                EXPECT_NE(nameOf(*each), "");
                EXPECT_TRUE(each->role() == QAccessible::List ||
                            !each->actionInterface()->actionNames().empty());
            }
        }
    }
}

TEST_F(SettingsViewTest, zonesAreSelectedMovedAndPinnedByActions) {
    model.show(SettingsSection::layout);
    EXPECT_TRUE(find(QAccessible::RadioButton, "Wide")->state().checked);
    act(QAccessible::ListItem, "Zone 2, x 0.5", QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(find(QAccessible::ListItem, "Zone 2, x 0.5")->state().selected);
    EXPECT_FALSE(find(QAccessible::ListItem, "Zone 1, x 0")->state().selected);

    act(QAccessible::ButtonMenu, "Use a preset", "Thirds");
    EXPECT_EQ(ring().size(), 4);
    model.edit([](LayoutEditor& editor) { editor.undo(); });
    act(QAccessible::ListItem, "Zone 3, Tall", "Move up");
    act(QAccessible::ListItem, "Zone 1, Wide", "Pin");
    EXPECT_THAT(ring(),
                ElementsAre("Zone 1, Wide (landscape), pinned",
                            "Zone 2, Tall (portrait)   not connected, pinned", "Zone 3, Wide (landscape)"));
    EXPECT_FALSE(
        find(QAccessible::ListItem, "Zone 3, W")->actionInterface()->actionNames().contains("Move down"));
}

TEST_F(SettingsViewTest, slidersSayTheNumbersThatAreRead) {
    model.show(SettingsSection::overlay);
    find(QAccessible::Slider, "Delay")->valueInterface()->setCurrentValue(0.85);
    EXPECT_EQ(model.editor().config().overlayAppearance()->delay, 0.85);
    act(QAccessible::Slider, "Zone shading, 18%", QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(find(QAccessible::Slider, "Zone shading, 19%")->valueInterface()->currentValue(), 19);
    EXPECT_EQ(find(QAccessible::Slider, "Zone number")->valueInterface()->minimumValue(),
              OverlayLimits::numberSize.lower);
    EXPECT_TRUE(model.editor().canUndo());
}

TEST_F(SettingsViewTest, everyTextFollowsTheDesktopIntoTheDarkAndBack) {
    const auto before = QApplication::palette();
    for (const auto section : settingsSections) {
        model.show(section);
        for (const auto& ground : {QColor("#202224"), QColor("#EEEEEE")}) {
            QApplication::setPalette(QPalette(ground));
            QCoreApplication::processEvents();
            for (const auto* label : view.findChildren<QLabel*>()) {
                SCOPED_TRACE(label->text().toStdString());
                const int distance = label->palette().windowText().color().lightness() - ground.lightness();
                EXPECT_EQ(distance > 0, ground.lightness() < 128);
                EXPECT_GT(std::abs(distance), 60);
            }
        }
    }
    QApplication::setPalette(before);
}

} // namespace karto::testing
