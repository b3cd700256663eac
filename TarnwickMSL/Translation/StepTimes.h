// The processor time of a compilation, step by step.
#pragma once

#include <ctime>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

// The clock of one thread. Each call of `add` ends a step.
class StepTimes {
  public:
    struct Row {
        std::string_view step; // a literal
        double milliseconds = 0;
    };

    StepTimes() { start(); }
    // What follows belongs to the next step that is added.
    void start() { last = now(); }
    // Adds the time since the last call to the step's row.
    void add(std::string_view step) {
        const double then = last;
        start();
        row(step).milliseconds += last - then;
    }
    // In the order in which the steps first ended.
    const std::vector<Row>& rows() const { return rows_; }

  private:
    std::vector<Row> rows_;
    double last = 0;

    static double now() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }
    Row& row(std::string_view step) {
        for (Row& known : rows_)
            if (known.step == step)
                return known;
        return rows_.emplace_back(Row{step});
    }
};

// Nothing if nobody measures.
inline void addTime(StepTimes* times, std::string_view step) {
    if (times)
        times->add(step);
}

} // namespace tarnwick::msl
