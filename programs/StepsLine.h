// How far a simulation is, on the terminal.
#pragma once

#include <cstdint>

namespace tarnwick {

// One line of standard error, written anew by each call and wiped at the end. Nothing where that is
// no terminal.
class StepsLine {
  public:
    StepsLine();
    ~StepsLine();
    StepsLine(const StepsLine&) = delete;
    StepsLine& operator=(const StepsLine&) = delete;

    void show(std::int64_t step, std::int64_t goal);

  private:
    bool isTerminal_;
    bool isShown_ = false;
};

} // namespace tarnwick
