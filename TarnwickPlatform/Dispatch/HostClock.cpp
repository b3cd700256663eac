#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <chrono>

namespace tarnwick {

double currentMediaTime() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

} // namespace tarnwick
