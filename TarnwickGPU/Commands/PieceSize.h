// How large the pieces of one draw or dispatch are, by the time that those before took.
//
// A piece takes its units' time and sometimes a fixed one: a driver may compile a function again
// for each draw. Smaller pieces then only repeat the fixed time. Where the smallest piece takes too
// long, one of twice its size shows which it is; what it shows is kept with the pipeline.
#pragma once

#include "TarnwickGPU/Commands/WorkTraits.h"

#include <cstdint>

namespace tarnwick::gpu {

// Seconds: what the units of a piece should take, and up to what work is submitted whole.
inline constexpr double pieceSeconds = 0.05, wholeSeconds = 0.08;

class PieceSize {
  public:
    // `fewest`: units that occupy the device; a smaller piece would not be shorter.
    PieceSize(WorkCost& cost, std::uint64_t fewest);

    // Nothing was measured: neither a piece nor the same work before.
    bool isUnknown() const { return pieces_ == 0 && known_.mean <= 0; }
    std::uint64_t pieces() const { return pieces_; } // that took() was called for
    // Seconds that a piece of `units` units should take; 0 if unknown.
    double expected(std::uint64_t units) const;
    // The units of the next piece, at least `fewest`, which should take `seconds` beside the fixed
    // time.
    std::uint64_t next(double seconds);
    // The last of next() took `seconds`. With `isLast` the cost of the work is known.
    void took(std::uint64_t units, double seconds, bool isLast);

  private:
    struct Measured {
        std::uint64_t pieces = 0, units = 0;
        double seconds = 0;

        double perUnit() const { return seconds / static_cast<double>(units); }
    };

    bool needsTrial() const;
    void compare(const Measured& now);
    void learn() const;

    WorkCost* cost_;
    std::uint64_t fewest_;
    WorkCost::Seconds known_;
    std::uint64_t pieces_ = 0;
    bool mayTry_ = true, isTrial_ = false;
    int failures_ = 0;   // of larger pieces in turn that were not quicker for each unit
    double fixed_ = 0;   // seconds of each piece, whatever its units: an upper bound; 0: none known
    double perUnit_ = 0; // seconds, without the fixed ones
    std::uint64_t asked_ = 0;
    Measured last_;
    // Without the first piece of work that was not measured before: the driver may compile during
    // it.
    Measured all_, largest_;
    double most_ = 0; // seconds of a unit in the slowest piece, without the fixed ones
};

} // namespace tarnwick::gpu
