// How far long work is, on standard error.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace tarnwick {

// Where standard error is a terminal, one line that is written anew a few times a second and wiped
// at the end: the first after a second of work, cut to the terminal's width as it then is.
// Elsewhere a line of the same words every ten seconds. A thread of its own writes, so that work
// that says nothing for long is seen to go on.
class ProgressBar {
  public:
    // `unit` is what is counted, capital: "Step".
    explicit ProgressBar(std::string_view unit);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // One of several parts, "Still 2 of 5", which stands before the rest from here on.
    void part(std::string_view name);
    // Work without a count, "Drawing e.metal"; the seconds since the beginning stand behind it.
    void doing(std::string_view what);
    // `done` in [0, goal]; `more` stands behind the count, the seconds where it is empty.
    void show(std::int64_t done, std::int64_t goal, std::string_view more = {});
    // Nothing is written until the next call of doing() or show(), so that other words can be.
    void hide();

  private:
    using Clock = std::chrono::steady_clock;

    void write();
    std::string words() const;
    std::string line() const;
    void wipe();
    void run(const std::stop_token& stop);

    const std::string unit_;
    const bool isTerminal_;
    const Clock::time_point begin_ = Clock::now();
    Clock::time_point lastLine_ = begin_;
    std::mutex mutex_; // of all that follows
    std::condition_variable_any ended_;
    std::string part_, what_, more_;
    std::optional<double> share_; // of the count, [0, 1]
    bool isShown_ = false;
    std::jthread writer_; // last, so that it ends first
};

// "Still 2 of 5" for the index 1.
std::string partName(std::string_view unit, std::size_t index, std::size_t count);

// "12 s", "1:05", "1:00:05"
std::string clockText(double seconds);

} // namespace tarnwick
