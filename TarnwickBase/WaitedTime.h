// How long something has been waited for, for limits to patience.
#pragma once

#include <chrono>

namespace tarnwick {

// The steady clock goes on while a process is stopped (Ctrl-Z, SIGSTOP, a batch system), so a limit
// that was set by the clock is over when the process goes on, though whatever it waits for was
// stopped as well or has long arrived. This counts in steps between two looks, each of which is at
// most `longestStep`: look that often. One thread.
class WaitedTime {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds longestStep{1};

    explicit WaitedTime(Clock::time_point begin = Clock::now()) : last(begin) {}

    // The sum of all steps.
    Clock::duration look(Clock::time_point now = Clock::now());

  private:
    Clock::time_point last;
    Clock::duration sum{0};
};

} // namespace tarnwick
