// The host's clock, by which frames are timed.
#pragma once

#include <functional>

namespace tarnwick {

// Seconds since an arbitrary moment. Never decreases; advances while the process sleeps, not while
// the machine does. Any thread.
double currentMediaTime();

// A function in place of currentMediaTime, for tests.
using HostClock = std::function<double()>;

} // namespace tarnwick
