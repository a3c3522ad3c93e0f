#pragma once
// Waiting for something that another process does: looked for every two milliseconds until it is there or the
// time is up. Nothing here sleeps for a fixed time.

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace karto::desktop {

using namespace std::chrono_literals;

// Long enough for a machine that is busy with much else; a test that passes never waits so long.
inline constexpr std::chrono::milliseconds patience = 30s;

template<typename Condition>
bool eventually(const Condition& condition, std::chrono::milliseconds timeout = patience) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

// What a test cannot do without: its absence ends the test.
template<typename Condition>
void require(const std::string& what, const Condition& condition) {
    if (!eventually(condition)) {
        throw std::runtime_error("waited in vain: " + what);
    }
}

} // namespace karto::desktop
