#include "StageTest.h"

#include "Karto/Platform/X11/Windows/Accessibility.h"

namespace karto::desktop {

namespace {

class NothingInstalled final : public InstalledApplications {
public:
    std::optional<std::string> name(std::string_view /*identity*/) override { return {}; }

    std::shared_ptr<const Image> icon(std::string_view /*identity*/) override { return nullptr; }
};

} // namespace

using ClosingTest = StageTest;

TEST_F(ClosingTest, aWindowIsReportedGoneWhenItIsGoneForGood) {
    NothingInstalled installed;
    x11::Accessibility accessibility(*connection, *windowManager, scheduler, installed, {});
    constexpr Rect area{.x = 100, .y = 90, .width = 420, .height = 310};
    Application window = Application::probe(desktop, "plain", "alpha", area);
    const Application other = Application::probe(desktop, "plain", "beta", area);
    int closed = 0;
    Registration closing = accessibility.observeClosing({window.window()}, [&] {
        ++closed;
        closing.reset();
    });
    const auto unheard = accessibility.observeClosing(
        {other.window()}, [] { ADD_FAILURE() << "the window that stays was reported"; });
    settle();
    window.process().signal(SIGKILL);
    EXPECT_TRUE(reaches([&] { return closed > 0; }));
    EXPECT_EQ(closed, 1);
}

} // namespace karto::desktop
