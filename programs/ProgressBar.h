// How far long work is, on the terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace tarnwick {

// One line of standard error, written anew by each call and wiped at the end; the first after half
// a second of work. Nothing where that is no terminal.
class ProgressBar {
  public:
    // `unit` is what is counted, capital: "Step". Outlives the bar.
    explicit ProgressBar(std::string_view unit);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // `done` in [0, goal]; `more` stands behind the count.
    void show(std::int64_t done, std::int64_t goal, std::string_view more = {});

    bool isTerminal() const { return isTerminal_; }

  private:
    std::string_view unit_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    bool isTerminal_;
    bool isShown_ = false;
};

} // namespace tarnwick
