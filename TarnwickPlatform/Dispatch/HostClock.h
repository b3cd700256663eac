// The host's clock: what frames are timed by.
#pragma once

#include <functional>

namespace tarnwick {

// Seconds since a moment of the host's own choice, never going back, running on while the process
// sleeps and standing still while the machine does. May be called from any thread.
double currentMediaTime();

// What reads the time in place of currentMediaTime, where a test brings its own.
using HostClock = std::function<double()>;

} // namespace tarnwick
