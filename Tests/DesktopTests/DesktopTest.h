#pragma once
// The stage of every test here: a private desktop with a landscape and a portrait display, a panel at the
// lower edge of the second one, a window manager, and the program with the sample configuration.

#include "Support/Application.h"
#include "Support/KartoProcess.h"
#include "Support/KeyPresser.h"
#include "Support/SampleZones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>

namespace karto::desktop {

class DesktopTest : public ::testing::Test {
protected:
    explicit DesktopTest(const std::string& manager = "openbox",
                         const std::vector<Output>& outputs = studioAndTower)
        : desktop(outputs)
        , panel(startPanel(desktop, outputs.at(1).area, panelHeight)) {
        desktop.startWindowManager(manager);
        KartoProcess::writeConfiguration(desktop, sampleConfiguration);
    }

    void TearDown() override {
        if (HasFailure() && karto) {
            std::cerr << "--- check log\n"
                      << contentsOf(KartoProcess::logPath(desktop)) << "--- standard error\n"
                      << karto->process().errors();
        }
        if (karto && shouldSurvive) {
            EXPECT_TRUE(karto->process().isAlive()) << "the program died";
            karto->process().signal(SIGTERM);
            EXPECT_EQ(karto->process().waitForExit(), (Exit{.status = 0, .signal = {}}));
        }
    }

    // Ends the one that runs.
    void launchKarto(const Environment& changes = {}) {
        karto.reset();
        karto = std::make_unique<KartoProcess>(desktop, changes);
    }

    void startKarto() {
        launchKarto();
        karto->waitForBanner();
    }

    // The program's own window, once it is the active one.
    std::optional<xcb_window_t> ownWindow() {
        std::optional<xcb_window_t> own;
        const bool isActive = eventually([&] {
            own = desktop.x().clientOf(karto->process().pid());
            return own && desktop.x().activeWindow() == *own;
        });
        return isActive ? own : std::nullopt;
    }

    void closeOwnWindow() {
        desktop.x().close(ownWindow().value_or(XCB_WINDOW_NONE));
        EXPECT_TRUE(eventually([&] { return !desktop.x().clientOf(karto->process().pid()); }));
    }

    // Presses hyper and the key, and returns what the log says next about the command; empty when nothing.
    std::string press(const std::string& key, const std::string& command) {
        keys.chord(key);
        return karto->log().next("command " + command + ":").value_or("");
    }

    // The same for a change that reaches the program in its own time: pressed until the command fits.
    ::testing::AssertionResult pressUntilFits(const std::string& key, const Application& window,
                                              const Rect& wanted) {
        const bool fitted = eventually([&] {
            keys.chord(key);
            return eventually([&] { return fits(window.frame(), wanted); }, 300ms);
        });
        return fitted ? ::testing::AssertionSuccess() : mismatch(window, wanted);
    }

    ::testing::AssertionResult takes(const Application& window, const Rect& wanted) {
        const bool fitted = eventually([&] { return fits(window.frame(), wanted); });
        return fitted ? ::testing::AssertionSuccess() : mismatch(window, wanted);
    }

    // Kept for people to look at, in the folder that KARTO_PICTURES names, if it names one.
    void takePicture(const std::string& name) {
        const char* const folder = std::getenv("KARTO_PICTURES");
        if (folder == nullptr) {
            return;
        }
        // Compositors paint what is new a frame or two later.
        std::this_thread::sleep_for(200ms);
        const auto& test = *::testing::UnitTest::GetInstance()->current_test_info();
        std::string file = std::string(test.test_suite_name()) + "." + test.name() + "." + name + ".png";
        std::ranges::replace(file, '/', '-');
        desktop.screenshot(std::filesystem::path(folder) / file);
    }

    PrivateDesktop desktop;
    KeyPresser keys{desktop.x()};
    ChildProcess panel;
    std::unique_ptr<KartoProcess> karto;
    bool shouldSurvive = true;

private:
    static ::testing::AssertionResult mismatch(const Application& window, const Rect& wanted) {
        const Rect is = window.frame();
        return ::testing::AssertionFailure()
               << window.name() << " is at " << is.x << ", " << is.y << ", " << is.width << ", " << is.height
               << " instead of " << wanted.x << ", " << wanted.y << ", " << wanted.width << ", "
               << wanted.height;
    }
};

class ManagerTest : public DesktopTest, public ::testing::WithParamInterface<std::string> {
protected:
    ManagerTest()
        : DesktopTest(GetParam()) {}
};

// The window managers of this machine; the first three are always tested.
inline std::vector<std::string> windowManagers() {
    std::vector<std::string> names{"openbox", "xfwm4", "metacity"};
    for (const std::string name : {"kwin_x11", "mutter"}) {
        if (std::filesystem::exists("/usr/bin/" + name)) {
            names.push_back(name);
        }
    }
    return names;
}

inline const auto onEveryManager = ::testing::ValuesIn(windowManagers());

inline std::string managerName(const ::testing::TestParamInfo<std::string>& info) { return info.param; }

} // namespace karto::desktop
