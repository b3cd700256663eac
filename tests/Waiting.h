// Waits for other threads, independent of their speed.
#pragma once

#include <chrono>
#include <cstdlib>
#include <thread>

namespace tarnwick {

// How many times longer tests wait for others: TARNWICK_PATIENCE, for checks that make programs
// slow.
inline double patience() {
    const char* given = std::getenv("TARNWICK_PATIENCE");
    return given != nullptr ? std::strtod(given, nullptr) : 1;
}

// Whether `condition` holds within `seconds`, more with patience; checked every millisecond.
template <class Condition> bool eventually(Condition condition, double seconds = 30) {
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds * patience());
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace tarnwick
