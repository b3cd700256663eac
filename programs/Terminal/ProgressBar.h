// The progress of long work, on standard error.
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

// On a terminal: one line that is rewritten a few times per second, from the first second of work
// on, cut to the terminal's width, and erased at the end. Elsewhere: a line with the same words
// every ten seconds. Its own thread writes, so that work without news is still shown as running.
class ProgressBar {
  public:
    // `unit` is the counted thing, with a capital: "Step".
    explicit ProgressBar(std::string_view unit);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // The name of the current part, "Still 2 of 5", which precedes all other text from here on.
    void part(std::string_view name);
    // Work without a count, "Drawing e.metal"; the seconds since the start follow it.
    void doing(std::string_view what);
    // `done` in [0, goal]; `more` follows the count; default: the seconds.
    void show(std::int64_t done, std::int64_t goal, std::string_view more = {});
    // Writes nothing until the next call of doing() or show(), so that other text can be printed.
    void hide();

  private:
    using Clock = std::chrono::steady_clock;

    enum class Form : std::uint8_t { rewrittenLine, lines, json };
    struct Count {
        std::int64_t done = 0, goal = 0;
    };
    static Form form();

    void write();
    double elapsed() const; // seconds
    std::string words() const;
    std::string json() const;
    std::string line() const;
    void wipe();
    void run(const std::stop_token& stop);

    const std::string unit_;
    const Form form_;
    const Clock::time_point begin_ = Clock::now();
    Clock::time_point lastLine_ = begin_;
    std::mutex mutex_; // of all that follows
    std::condition_variable_any ended_;
    std::string part_, what_, more_;
    std::optional<Count> count_;
    bool isShown_ = false;
    std::jthread writer_; // last, so that it ends first
};

// "Still 2 of 5" for the index 1.
std::string partName(std::string_view unit, std::size_t index, std::size_t count);

// "12 s", "1:05", "1:00:05"
std::string clockText(double seconds);

} // namespace tarnwick
