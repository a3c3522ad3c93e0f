#include "Karto/Platform/X11/Keyboard/PressFilter.h"

namespace karto::x11 {

namespace {

using std::chrono::milliseconds;

// How far a repetition may be off its time: where a release cannot have been missed as far as a stalled
// machine may need, and else so little that a second press is hardly ever taken for one.
constexpr milliseconds patience{1000};
constexpr milliseconds early{20};
constexpr milliseconds late{100};

} // namespace

bool PressFilter::isRepetition(xcb_keycode_t key, xcb_timestamp_t time,
                               const KeyRepetition& repetition) const {
    if (!held_ || held_->key != key || !repetition.repeats(key)) {
        return false;
    }
    // Server time wraps around.
    const milliseconds gap(xcb_timestamp_t{time - held_->time});
    const auto expected = held_->repeated ? repetition.interval : repetition.delay;
    return held_->doubtful ? gap >= expected - early && gap <= expected + late : gap <= expected + patience;
}

bool PressFilter::pressed(xcb_keycode_t key, xcb_timestamp_t time, const KeyRepetition& repetition) {
    const bool repeated = isRepetition(key, time, repetition);
    // A key that does not repeat leaves another one repeating.
    if (repetition.repeats(key)) {
        held_ = {.key = key, .time = time, .repeated = repeated};
    }
    return !repeated;
}

void PressFilter::released(xcb_keycode_t key, const KeyRepetition& repetition) {
    if (!held_ || !repetition.repeats(key)) {
        return;
    }
    if (held_->key == key) {
        held_.reset();
    } else {
        loseSight();
    }
}

void PressFilter::loseSight() {
    if (held_) {
        held_->doubtful = true;
    }
}

} // namespace karto::x11
