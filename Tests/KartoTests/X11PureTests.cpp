#include "Karto/Adapters/KeyCodes.h"
#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/X11/Keyboard/Keyboard.h"
#include "Karto/Platform/X11/Keyboard/PressFilter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace karto::x11 {

namespace {

constexpr std::uint32_t unknownKeyCode = 999;
constexpr xcb_keycode_t keyA = 38;
constexpr xcb_keycode_t keyB = 56;
constexpr xcb_keycode_t shiftKey = 50;

// Every key but Shift repeats after 400 ms, every 40 ms.
KeyRepetition repetition() {
    KeyRepetition result{.delay = std::chrono::milliseconds(400), .interval = std::chrono::milliseconds(40)};
    result.keys.fill(0xFF);
    result.keys.at(shiftKey / 8) &= static_cast<std::uint8_t>(~(1U << (shiftKey % 8U)));
    return result;
}

struct KeyEvent {
    enum class Kind : std::uint8_t { down, again, up };

    Kind kind = Kind::down;
    xcb_keycode_t key = 0;
    xcb_timestamp_t time = 0;
};

constexpr auto down = KeyEvent::Kind::down;
constexpr auto again = KeyEvent::Kind::again;
constexpr auto up = KeyEvent::Kind::up;

void expectToTellApart(const std::vector<KeyEvent>& events, const KeyRepetition& repetition) {
    PressFilter filter;
    for (const KeyEvent& event : events) {
        if (event.kind == up) {
            filter.released(event.key, repetition);
        } else {
            EXPECT_EQ(filter.pressed(event.key, event.time, repetition), event.kind == down)
                << "at " << event.time;
        }
    }
}

} // namespace

TEST(KeyNames, everyKeyOfTheProgramHasAPlaceOfItsOwn) {
    std::vector<std::uint32_t> codes{escapeKeyCode};
    std::ranges::transform(ZoneDigits::codes, std::back_inserter(codes), &ZoneDigits::DigitKey::keyCode);
    for (const auto name : CommandKey::vocabulary) {
        codes.push_back(CommandKey::named(name).and_then(carbonKeyCode).value_or(unknownKeyCode));
    }
    std::set<std::string_view> names;
    for (const auto code : codes) {
        names.insert(keyName(code).value_or("missing"));
    }
    EXPECT_FALSE(names.contains("missing"));
    EXPECT_EQ(names.size(), 43U);
    EXPECT_EQ(keyName(53), "ESC");
    EXPECT_EQ(keyName(22), "AE06");
    EXPECT_EQ(keyName(unknownKeyCode), std::nullopt);
}

TEST(ModifierMasks, translateBothWaysAndRefuseWhatTheKeyboardLacks) {
    const ModifierMasks masks{.shift = 1, .command = 64, .control = 4, .option = 0};
    EXPECT_EQ(masks.realModifiers(HotKeyMask::shift | HotKeyMask::command | HotKeyMask::control), 69);
    EXPECT_EQ(masks.realModifiers(HotKeyMask::shift | HotKeyMask::option), std::nullopt);
    constexpr std::uint8_t commandAndLocks = 64 | 2 | 16;
    EXPECT_EQ(masks.modifierBits(commandAndLocks), ModifierBits::command);
}

TEST(PressFilter, tellsPressesFromRepetitions) {
    // One key, held and pressed again, over the wrap of the server's time.
    expectToTellApart({{down, keyA, 0xFFFFFF00},
                       {again, keyA, 0xFFFFFF00 + 400},
                       {again, keyA, 0xFFFFFF00 + 440},
                       {up, keyA},
                       {down, keyA, 0xFFFFFF00 + 450}},
                      repetition());
    // Modifiers come and go while a key repeats.
    expectToTellApart(
        {{down, keyA, 0}, {up, shiftKey}, {again, keyA, 400}, {down, shiftKey, 410}, {again, keyA, 440}},
        repetition());
    // Another key takes over; the first one can only repeat after a press of its own.
    expectToTellApart({{down, keyA, 0}, {down, keyB, 100}, {again, keyB, 500}, {down, keyA, 600}},
                      repetition());
}

TEST(PressFilter, aReleaseThatWentUnseenSwallowsNothing) {
    // The grab ends with the first key; the second one's release went elsewhere, or it is held still.
    const std::vector<KeyEvent> rolled{{down, keyA, 0}, {down, keyB, 50}, {up, keyA}};
    for (const auto& [kind, time] : {std::pair{down, 200U}, {again, 455U}, {down, 700U}, {down, 5000U}}) {
        auto events = rolled;
        events.push_back({kind, keyB, time});
        expectToTellApart(events, repetition());
    }
    // Any other loss is over within a second or so.
    expectToTellApart({{down, keyA, 0}, {down, keyA, 1500}}, repetition());
    expectToTellApart({{down, keyA, 0}, {down, keyA, 400}}, KeyRepetition());
}

TEST(Observers, mayComeAndGoWhileTheyAreCalled) {
    Observers<int> observers;
    std::vector<std::string> heard;
    Registration first;
    Registration second;
    Registration third;
    first = observers.add([&](int) {
        heard.emplace_back("first");
        first.reset();
        second.reset();
        third = observers.add([&](int) { heard.emplace_back("third"); });
    });
    second = observers.add([&](int) { heard.emplace_back("second"); });
    observers.notify(1);
    observers.notify(2);
    EXPECT_THAT(heard, testing::ElementsAre("first", "third"));
}

} // namespace karto::x11
