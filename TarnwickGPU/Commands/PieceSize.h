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
    // Seconds of a piece with so many units; 0 if unknown.
    double expected(std::uint64_t units) const;
    // The units of the next piece, at least `fewest`, which should take `seconds` beside the fixed
    // time.
    std::uint64_t next(double seconds);
    // The last of next() took `seconds`. With `isLast` the cost of the work is known.
    void took(std::uint64_t units, double seconds, bool isLast);

  private:
    bool needsTrial() const;
    void estimateFixed(std::uint64_t units, double seconds);
    void learn();

    WorkCost* cost_;
    std::uint64_t fewest_;
    WorkCost::Seconds known_;
    std::uint64_t pieces_ = 0;
    bool mayTry_ = true, isTrial_ = false;
    double fixed_ = 0; // seconds of each piece, whatever its units
    // Of the last piece.
    std::uint64_t asked_ = 0, lastUnits_ = 0;
    double lastSeconds_ = 0;
    double perUnit_ = 0; // seconds, without the fixed ones
    // Of all pieces, without the first one of work that was not measured before: the driver may
    // compile during it.
    std::uint64_t measuredPieces_ = 0, measuredUnits_ = 0;
    double measuredSeconds_ = 0;
    double most_ = 0; // seconds of a unit in the slowest piece, without the fixed ones
};

} // namespace tarnwick::gpu
