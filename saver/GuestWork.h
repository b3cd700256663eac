// Keeps a saver within its share of the machine while it draws.
#pragma once

#include "saver/Guest/PictureBudget.h"
#include "saver/MTKView.h"

#include <optional>

namespace tarnwick {

// One thread at a time.
class GuestWork {
  public:
    // `share` of the machine in (0, 1]; absent: one half with a CPU driver, all of a GPU. With a
    // CPU driver the threads of the process are restricted to as many CPUs.
    GuestWork(const MTKView& metal, std::optional<double> share);

    // The frame before is done at `now`. Chooses the
    // size of the next one.
    void frameDone(MTKView& metal, double now);
    void frameBegun(double now) { begun_ = now; }
    // Seconds until the next frame may begin.
    double rest(double now) const { return budget_.rest(now); }

  private:
    void lookAtPower(double now);

    bool isOnCPU_;
    double share_; // on mains
    PictureBudget budget_;
    std::optional<double> begun_; // seconds of the host clock: of a frame that is not done
    double cpuTime_;              // seconds of the process when the last frame was done
    double powerLook_ = 0;        // seconds of the host clock
};

} // namespace tarnwick
