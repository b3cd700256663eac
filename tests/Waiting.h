// Waits for other threads, independent of their speed.
#pragma once

#include <chrono>
#include <thread>

namespace tarnwick {

// Whether `condition` holds within 30 s; checked every millisecond.
template <class Condition> bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace tarnwick
