#include "DesktopTest.h"

namespace karto::desktop {

namespace {

struct Twins {
    std::string name;
    std::uint32_t leftSerial = 0;
    std::uint32_t rightSerial = 0;
    // The one whose name has no number.
    bool isLeftPlain = true;
};

// Zones 1 and 2 for the plain one, zone 3 for the other one.
const std::string layouts = R"toml([profile]
name = "Twins"
[[display]]
name = "Studio"
orientation = "landscape"
split = { axis = "vertical", at = 0.5, first = {}, second = {} }
[[display]]
name = "Studio (2)"
orientation = "landscape"
)toml";

const Rect left{.x = 0, .y = 0, .width = 1280, .height = 800};
const Rect right{.x = 1280, .y = 0, .width = 1280, .height = 800};

} // namespace

// Two displays of one model, side by side.
class TwinDisplayTest : public DesktopTest, public ::testing::WithParamInterface<Twins> {
protected:
    TwinDisplayTest()
        : DesktopTest("openbox", {{.name = "Studio", .area = left, .serial = GetParam().leftSerial},
                                  {.name = "Studio", .area = right, .serial = GetParam().rightSerial}}) {
        KartoProcess::writeConfiguration(desktop, layouts);
    }

    // Pressed until the change has reached the program and the window is on the display.
    ::testing::AssertionResult leadsTo(const std::string& zoneKey, const Rect& display) {
        const bool arrived = eventually([&] {
            keys.chord(zoneKey);
            return eventually([&] { return display.contains(window->frame().center()); }, 300ms);
        });
        return arrived ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << window->frame().x;
    }

    void expectPlain(const Rect& plain) {
        const Rect& other = plain == left ? right : left;
        EXPECT_TRUE(leadsTo("AE01", plain));
        EXPECT_TRUE(leadsTo("AE03", other));
        EXPECT_TRUE(leadsTo("AE02", plain));
    }

    // Held again until the change has reached the program.
    bool showsOverlays(std::size_t count) {
        const auto shows = [this](std::size_t wanted) {
            return eventually([&] { return desktop.x().unmanagedFrames("karto").size() == wanted; }, 1s);
        };
        return eventually([&] {
            keys.holdHyper();
            const bool shown = shows(count);
            takePicture("overlays");
            keys.releaseHyper();
            return shows(0) && shown;
        });
    }

    std::unique_ptr<Application> window;
};

INSTANTIATE_TEST_SUITE_P(With, TwinDisplayTest,
                         ::testing::Values(Twins{"differentSerials", 7, 3, false},
                                           Twins{"equalSerials", 7, 7}, Twins{"noSerials", 0, 0},
                                           Twins{"oneSerial", 0, 9, false}),
                         [](const auto& twins) { return twins.param.name; });

TEST_P(TwinDisplayTest, keepTheirZonesAndHaveAnOverlayEach) {
    if (!desktop.hasOutputs()) {
        GTEST_SKIP() << "the monitors of this server cannot share a name";
    }
    const Rect plain = GetParam().isLeftPlain ? left : right;
    const Rect other = GetParam().isLeftPlain ? right : left;
    startKarto();
    EXPECT_TRUE(karto->log().next(GetParam().isLeftPlain ? "displays [Studio, Studio (2)]"
                                                         : "displays [Studio (2), Studio]"));
    window = std::make_unique<Application>(Application::probe(desktop, "plain", "window", somewhere));
    expectPlain(plain);
    EXPECT_TRUE(showsOverlays(2));

    // Serials go with the displays; without, only the outputs tell them apart.
    desktop.swapCables();
    expectPlain(GetParam().leftSerial == GetParam().rightSerial ? plain : other);
    desktop.swapCables();
    expectPlain(plain);

    constexpr std::size_t rightOne = 1;
    desktop.setConnected(rightOne, false);
    EXPECT_TRUE(showsOverlays(1));
    karto->log().rest();
    EXPECT_TRUE(press("AE03", "moveToZone(3)").contains("no destination"));
    EXPECT_TRUE(leadsTo("AE01", left));
    desktop.setConnected(rightOne, true);
    expectPlain(plain);
}

} // namespace karto::desktop
