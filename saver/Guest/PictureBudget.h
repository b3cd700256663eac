// Chooses the size and the rate of a saver's pictures so that they take no more than a share of the
// machine.
#pragma once

#include <array>
#include <cstddef>

namespace tarnwick {

// Times are seconds of the host clock. A cost is the time for which one frame occupied the machine:
// on a CPU driver the CPU time of the process divided by the number of CPUs, on a GPU the time of
// the GPU. The size is lowered first; if the smallest picture costs too much, the rate is. One
// thread at a time.
class PictureBudget {
  public:
    // Factors of width and height.
    static constexpr std::array<double, 6> scales{1, 0.8, 0.64, 0.5, 0.4, 0.32};
    static constexpr int measuredFrames = 5; // before the size changes; 2 if they cost far too much
    static constexpr double patience = 20;   // seconds before the picture becomes larger
    static constexpr double longestDebt = 5; // seconds

    // `share` is in (0, 1], `rate` in frames per second.
    PictureBudget(double share, double rate) : share_(share), rate_(rate) {}

    double share() const { return share_; }
    void setShare(double share) { share_ = share; }
    double scale() const { return scales[step_]; }

    // A frame of the present scale() was done at `now` and had this cost.
    void spend(double cost, double now);
    // Seconds from `now` until the next frame may begin, so that the share is kept.
    double rest(double now) const;

  private:
    void choose(double now);

    double share_, rate_;
    std::size_t step_ = 0; // index of the scale
    int frames_ = 0;       // of this scale
    double cost_ = 0;      // mean of the last frames of this scale
    double freeAt_ = 0;    // when the share has paid for all frames
    double changed_ = 0;   // when the scale was chosen
};

} // namespace tarnwick
