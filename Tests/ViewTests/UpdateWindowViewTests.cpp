#include "Karto/Updates/Views/UpdateWindowView.h"

#include <QApplication>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace karto::testing {

namespace {

// What the window looks like after it was told these, without its buttons, of which one may have the focus.
QImage pictureAfter(const std::vector<UpdateView>& views) {
    UpdateWindowView window([](UpdateIntent /*intent*/) {});
    for (const auto& view : views) {
        window.tell(view);
        window.show();
        QApplication::processEvents();
    }
    constexpr int buttons = 60;
    return window.grab(QRect(0, 0, window.width(), window.height() - buttons)).toImage();
}

} // namespace

TEST(UpdateWindowView, everyStepLooksTheSameWhateverCameBefore) {
    const std::string word(400, 'w');
    const std::string words = word + word + word + word;
    std::vector<UpdateView> steps(6);
    steps[0].progress = 0;
    steps[1].notes = "One line.\nAnd another.";
    steps[2].notes = words;
    steps[3].progressText = "1 KB of 2 KB";
    steps[4].text = "A long way.\n" + words;
    steps[5].text = "It was not allowed.";
    for (std::size_t step = 0; step < steps.size(); ++step) {
        steps[step].heading = fmt::format("Step {}", step);
        const auto alone = pictureAfter({steps[step]});
        for (const auto& before : steps) {
            EXPECT_EQ(pictureAfter({before, steps[step]}), alone) << step << " after " << before.heading;
        }
    }
}

} // namespace karto::testing
