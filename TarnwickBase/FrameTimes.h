// Decides whether live frames take too long.
#pragma once

#include <algorithm>

namespace tarnwick {

// They do if one takes `longestFrame` seconds, or if consecutive frames of at least 1 s, each with
// a loop that ran out of its budget, take 5 s together (longestFrame if that is less): such a loop
// most likely never ends.
class FrameTimes {
  public:
    static constexpr double defaultLongestFrame = 20;   // seconds
    static constexpr double leastLongestFrame = 1;      // seconds
    static constexpr double greatestLongestFrame = 600; // seconds
    static constexpr double longestEndless = 5;         // seconds of frames with ended loops
    static constexpr double shortestSlow = 1;           // seconds; a faster frame is always shown

    // The user's choice: seconds in [leastLongestFrame, greatestLongestFrame].
    void setLongestFrame(double seconds) { longestFrame_ = seconds; }

    // The next frame is done: it took `seconds`, and whether a loop ran out of its budget.
    void add(double seconds, bool hitLoopBudget) {
        areTooLong_ = areTooLong(seconds, hitLoopBudget);
        endless_ = hitLoopBudget && seconds >= shortestSlow ? endless_ + seconds : 0;
    }

    // Whether frames take too long, if the current frame has taken that many seconds.
    bool areTooLong(double seconds = 0, bool hitLoopBudget = false) const {
        return areTooLong_ || seconds >= longestFrame_ ||
               (hitLoopBudget && seconds >= shortestSlow &&
                endless_ + seconds >= std::min(longestEndless, longestFrame_));
    }

    // The next frames are those of another program.
    void restart() {
        endless_ = 0;
        areTooLong_ = false;
    }

  private:
    double longestFrame_ = defaultLongestFrame;
    double endless_ = 0; // seconds, of the last frames
    bool areTooLong_ = false;
};

} // namespace tarnwick
