// Says when a saver's frames take too long to be shown.
#pragma once

namespace tarnwick {

// They do when one takes 20 seconds, or when frames of a second and more, one after another, each
// with a loop that ran out of its budget, come to 5 seconds: such a loop most likely never ends.
class FrameTimes {
  public:
    static constexpr double longestFrame = 20;  // seconds
    static constexpr double longestEndless = 5; // seconds, of frames with loops that were ended
    static constexpr double shortestSlow = 1;   // seconds; a quicker frame is shown in any case

    // The next frame is done: it took so many seconds, and a loop of its ran out of its budget.
    void add(double seconds, bool hitLoopBudget) {
        areTooLong_ = areTooLong(seconds, hitLoopBudget);
        endless_ = hitLoopBudget && seconds >= shortestSlow ? endless_ + seconds : 0;
    }

    // Whether they take too long, if the frame that is being drawn has taken so many seconds.
    bool areTooLong(double seconds = 0, bool hitLoopBudget = false) const {
        return areTooLong_ || seconds >= longestFrame ||
               (hitLoopBudget && seconds >= shortestSlow && endless_ + seconds >= longestEndless);
    }

  private:
    double endless_ = 0; // seconds, of the last frames
    bool areTooLong_ = false;
};

} // namespace tarnwick
