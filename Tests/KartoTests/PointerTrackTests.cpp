#include "Karto/Platform/X11/Stage/PointerTrack.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace karto::x11 {

namespace {

using ::testing::ElementsAre;

constexpr Size window{.width = 100, .height = 80};
constexpr std::uint16_t down = XCB_BUTTON_MASK_1;

// What the server says of the pointer, and how that is told.
class Course {
public:
    Course& enter(int x, int y, std::uint16_t state = 0) { return say(XCB_ENTER_NOTIFY, 0, x, y, state); }

    Course& move(int x, int y, std::uint16_t state = 0) { return say(XCB_MOTION_NOTIFY, 0, x, y, state); }

    Course& press(int x, int y, std::uint8_t number = 1) { return say(XCB_BUTTON_PRESS, number, x, y, 0); }

    Course& release(int x, int y, std::uint8_t number = 1) {
        return say(XCB_BUTTON_RELEASE, number, x, y, down);
    }

    Course& leave(int x, int y, std::uint8_t mode = XCB_NOTIFY_MODE_NORMAL) {
        return say(XCB_LEAVE_NOTIFY, 0, x, y, 0, mode);
    }

    Course& hide() { return say(XCB_UNMAP_NOTIFY, 0, 0, 0, 0); }

    // Nothing more has arrived.
    Course& lull() {
        tell(track.takeMovement());
        return *this;
    }

    PointerTrack track;
    std::vector<std::string> told;

private:
    Course& say(int code, std::uint8_t detail, int x, int y, std::uint16_t state, std::uint8_t mode = 0) {
        xcb_enter_notify_event_t event{};
        event.response_type = static_cast<std::uint8_t>(code);
        event.detail = detail;
        event.event_x = static_cast<std::int16_t>(x);
        event.event_y = static_cast<std::int16_t>(y);
        event.state = state;
        event.mode = mode;
        xcb_generic_event_t generic{};
        std::memcpy(&generic, &event, sizeof event);
        tell(track.take(generic, {}, window));
        return *this;
    }

    void tell(const std::vector<PointerEvent>& events) {
        constexpr std::array names{"moved", "left", "pressed", "dragged", "released", "cancelled"};
        for (const auto& [action, place, held] : events) {
            told.push_back(
                fmt::format("{} {},{}", names.at(static_cast<std::size_t>(action)), place.x, place.y));
        }
    }
};

} // namespace

TEST(PointerTrack, bordersCrossedInAGestureCountWhenItHasEnded) {
    Course course;
    course.enter(50, 50).press(50, 50).leave(120, 50).move(150, 50, down).lull();
    EXPECT_EQ(course.track.whereabouts()->place, (Point{150, 50}));
    course.enter(90, 50, down).lull().leave(101, 50).move(-20, 50, down).lull().release(-20, 50);
    course.leave(-20, 50, XCB_NOTIFY_MODE_UNGRAB).leave(-20, 50);
    EXPECT_THAT(course.told, ElementsAre("moved 50,50", "pressed 50,50", "dragged 150,50", "dragged 90,50",
                                         "dragged -20,50", "released -20,50", "left -20,50"));
    EXPECT_FALSE(course.track.whereabouts()->place);
}

TEST(PointerTrack, otherButtonsDoNothingButMayKeepThePointersEvents) {
    Course course;
    course.enter(50, 50).press(50, 50, 3).press(51, 50).release(51, 50).move(60, 50).lull();
    course.move(160, 50)
        .lull()
        .move(170, 50)
        .lull()
        .release(170, 50, 3)
        .leave(170, 50, XCB_NOTIFY_MODE_UNGRAB);
    EXPECT_THAT(course.told,
                ElementsAre("moved 50,50", "pressed 51,50", "released 51,50", "moved 60,50", "left 160,50"));
}

TEST(PointerTrack, aGestureThatIsTakenAwayIsCancelled) {
    const auto ended = [](const auto& end) {
        Course course;
        course.enter(50, 50).press(50, 50).move(60, 50, down).lull();
        course.told.clear();
        end(course);
        return course.lull().told;
    };
    EXPECT_THAT(ended([](Course& course) { course.hide(); }), ElementsAre("cancelled 60,50", "left 60,50"));
    EXPECT_THAT(ended([](Course& course) { course.leave(200, 50, XCB_NOTIFY_MODE_UNGRAB); }),
                ElementsAre("cancelled 200,50", "left 200,50"));
    EXPECT_THAT(ended([](Course& course) { course.move(70, 50).release(70, 50); }),
                ElementsAre("cancelled 70,50", "moved 70,50"));
    EXPECT_THAT(ended([](Course& course) { course.press(70, 50); }),
                ElementsAre("cancelled 70,50", "pressed 70,50"));
    // Nothing has to be cancelled, and nothing is known of the pointer any more.
    Course hidden;
    hidden.enter(50, 50).lull().hide().lull();
    EXPECT_THAT(hidden.told, ElementsAre("moved 50,50", "left 50,50"));
    EXPECT_FALSE(hidden.track.whereabouts());
}

} // namespace karto::x11
