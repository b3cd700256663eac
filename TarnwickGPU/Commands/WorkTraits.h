// How the work of a pipeline may be divided into several submissions, and how long it took so far.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace tarnwick::gpu {

// What a piece of work is counted in.
enum class WorkUnit : std::uint8_t { pixel, vertex, thread };

// Seconds of a unit and of a submission, as measured when the work was last submitted in pieces.
// Any thread.
class WorkCost {
  public:
    struct Seconds {
        float mean = 0;  // 0: not known
        float most = 0;  // of the slowest piece
        float fixed = 0; // of each submission, whatever its units
    };

    Seconds seconds() const {
        return {mean_.load(relaxed), most_.load(relaxed), fixed_.load(relaxed)};
    }
    bool isKnown() const { return mean_.load(relaxed) > 0; }
    void set(const Seconds& seconds) {
        fixed_.store(seconds.fixed, relaxed);
        most_.store(seconds.most, relaxed);
        mean_.store(seconds.mean, relaxed);
    }
    void forget() { // keeps the fixed time, which the next pieces correct
        mean_.store(0, relaxed);
        most_.store(0, relaxed);
    }
    // A larger piece may be tried to tell the fixed time. Few are, because they take longer.
    bool takeTrial() { return trials_.fetch_add(1, relaxed) < 3; }

  private:
    static constexpr auto relaxed = std::memory_order_relaxed;

    std::atomic<float> mean_{0}, most_{0}, fixed_{0};
    std::atomic<unsigned> trials_{0};
};

// Shared by a pipeline and the command buffers that use it.
struct WorkTraits {
    // The vertex function may run again for each part of the picture: it stores nothing.
    bool byPixels = true;
    // The functions do not see where a draw begins.
    bool byVertices = true, byInstances = true;
    // The kernel does not see the number of threadgroups.
    bool byThreadgroups = true;
    std::array<WorkCost, 3> costs; // by WorkUnit

    WorkCost& cost(WorkUnit unit) { return costs[static_cast<std::size_t>(unit)]; }
};

// `traits` holds for the function too.
void heed(WorkTraits& traits, const msl::EntryPoint& function);

} // namespace tarnwick::gpu
