#include "Karto/MenuBarIcon.h"
#include "Karto/Platform/Linux/Tray/MenuExport.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/TrayItem.h"
#include "Support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <optional>

namespace karto::testing {

namespace {

// A place for status items that comes and goes as the test says.
class MemoryTray final : public Tray {
public:
    std::optional<StatusItemFace> shown;

    void become(Presence presence) {
        presence_ = presence;
        observers_.notify();
    }

    [[nodiscard]] Presence presence() const override { return presence_; }

    Registration observePresence(std::function<void()> onChange) override {
        return observers_.add(std::move(onChange));
    }

    void show(const StatusItemContent& content) override { shown = content.face; }

    void hide() override { shown.reset(); }

    void updateMenu() override {}

private:
    Presence presence_ = Presence::unknown;
    Observers<> observers_;
};

struct TrayItemTest : ::testing::Test {
    void install() {
        installed = item.install([](const StatusIconStyle&) { return Image(); }, [] { return Menu(); });
    }

    MemoryTray preferred;
    MemoryTray fallback;
    ManualScheduler scheduler;
    TrayItem item{preferred, fallback, scheduler};
    Registration installed;
};

Menu lines(const std::vector<std::string>& texts) {
    Menu menu;
    for (const auto& text : texts) {
        menu.push_back({.text = text});
    }
    return menu;
}

int alphaAt(const Image& image, int x, int y) {
    return int(image.pixels.at((std::size_t(y) * std::size_t(image.width)) + std::size_t(x)) >> 24U);
}

} // namespace

TEST_F(TrayItemTest, goesToTheOtherKindOnlyWhereThePreferredOneStaysAway) {
    install();
    EXPECT_TRUE(preferred.shown);
    scheduler.advance(TrayItem::patience / 2);
    preferred.become(Tray::Presence::absent);
    EXPECT_FALSE(fallback.shown);
    scheduler.advance(TrayItem::patience / 2);
    EXPECT_TRUE(fallback.shown);
    EXPECT_FALSE(item.isShown());
    fallback.become(Tray::Presence::present);
    EXPECT_TRUE(item.isShown());

    preferred.become(Tray::Presence::present);
    EXPECT_FALSE(fallback.shown);
    EXPECT_TRUE(item.isShown());
    // A panel that is restarted.
    preferred.become(Tray::Presence::absent);
    preferred.become(Tray::Presence::present);
    scheduler.advance(TrayItem::patience * 2);
    EXPECT_FALSE(fallback.shown);
    EXPECT_EQ(scheduler.pendingTasks(), 0U);
}

TEST(MenuExport, aNumberNeverMeansAnotherLineThanThePersonSaw) {
    MenuExport menu;
    EXPECT_TRUE(menu.update(lines({"one", "two"})));
    const auto two = menu.number(1);
    EXPECT_EQ(menu.find(two)->text, "two");
    EXPECT_FALSE(menu.update(lines({"one", "two"})));
    EXPECT_EQ(menu.number(1), two);

    const auto revision = menu.revision();
    EXPECT_TRUE(menu.update(lines({"new", "one", "two"})));
    EXPECT_NE(menu.revision(), revision);
    EXPECT_EQ(menu.find(two)->text, "two");
    EXPECT_EQ(menu.find(menu.number(1))->text, "one");
    EXPECT_TRUE(menu.update({}));
    EXPECT_TRUE(menu.update(lines({"other"})));
    EXPECT_EQ(menu.find(two), nullptr);
    EXPECT_EQ(menu.find(MenuExport::root), nullptr);
    EXPECT_EQ(menu.find(-1), nullptr);
}

TEST(MenuExport, anActionIsTheOneMadeLast) {
    MenuExport menu;
    int performed = 0;
    for (int i = 1; i <= 2; ++i) {
        menu.update({{.text = "Quit", .action = [&performed, i] { performed = i; }}});
    }
    menu.find(menu.number(0))->action();
    EXPECT_EQ(performed, 2);
    EXPECT_EQ(exportedLabel("my_profile & co"), "my__profile & co");
}

TEST(MenuBarIcon, zonesMeetOnWholePixelsAtEverySize) {
    constexpr RGBColor ink{.red = 1, .green = 1, .blue = 1};
    for (int side = 16; side <= 64; ++side) {
        const auto image = MenuBarIcon::draw({.side = side, .ink = ink});
        ASSERT_EQ(image.pixels.size(), std::size_t(side) * std::size_t(side));
        // Through the middle of the upper zones: full, a gap of nothing, fainter up to the edge.
        const int row = side / 2 - side / 5;
        std::string kinds;
        for (int x = 0; x < side; ++x) {
            const int alpha = alphaAt(image, x, row);
            const char kind = alpha == 255 ? 'L' : alpha == 140 ? 'R' : alpha == 0 ? ' ' : '?';
            if (kinds.empty() || kinds.back() != kind) {
                kinds += kind;
            }
        }
        EXPECT_EQ(kinds, "L R") << side;
    }
}

TEST(MenuBarIcon, theMarkIsRedAndSetApartFromTheZones) {
    for (const int side : {16, 22, 24, 32, 48}) {
        const auto plain = MenuBarIcon::draw({.side = side});
        const auto marked = MenuBarIcon::draw({.side = side, .hasUpdateMark = true});
        const int center = int(0.15 * side);
        EXPECT_EQ(marked.pixels.at(std::size_t(center * side + side - 1 - center)), 0xFFFF3B30U) << side;
        EXPECT_EQ(alphaAt(marked, 1, side / 2), alphaAt(plain, 1, side / 2));
        // Nothing is half covered by the mark: a clear ring lies between.
        const int below = int(0.3 * side) + 1;
        EXPECT_LT(alphaAt(marked, side - 1 - center, below), 140) << side;
    }
}

} // namespace karto::testing
