// The time that a wait has lasted, for timeouts.
#pragma once

#include <chrono>

namespace tarnwick {

// The steady clock goes on while a process is stopped (Ctrl-Z, SIGSTOP, a batch system). A timeout
// set by the clock would then have expired when the process continues, although the other side was
// stopped as well or has answered. This class adds the times between two calls of look(), each
// limited to `longestStep`. Call look() at least that often. For one thread.
class WaitedTime {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds longestStep{1};

    explicit WaitedTime(Clock::time_point begin = Clock::now()) : last(begin) {}

    // The sum of all steps up to `now`.
    Clock::duration look(Clock::time_point now = Clock::now());

  private:
    Clock::time_point last;
    Clock::duration sum{0};
};

} // namespace tarnwick
