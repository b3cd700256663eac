#include "TarnwickGPU/Commands/PieceSize.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::gpu {

namespace {

// The limits of the units of a piece, as multiples of those of the piece before. With a fixed time
// the limit is smaller, because that time is less certain: another part of the picture may have
// been slower.
constexpr double mostGrowth = 8, leastGrowth = 1.1, growthWithFixed = 2;

// How many times as large as a piece of `seconds` the next one may be: even if each of its units
// takes longer by the same factor, as where a picture has more detail further down, it takes no
// more than `enough`.
double growthAfter(double seconds) {
    constexpr double enough = 0.5 * pieceSeconds;
    return std::clamp(std::sqrt(enough / std::max(seconds, 1e-9)), leastGrowth, mostGrowth);
}

std::uint64_t times(std::uint64_t units, double factor) {
    return static_cast<std::uint64_t>(static_cast<double>(units) * factor);
}

} // namespace

PieceSize::PieceSize(WorkCost& cost, std::uint64_t fewest)
    : cost_(&cost), fewest_(fewest), known_(cost.seconds()), fixed_(known_.fixed),
      perUnit_(known_.most) {}

double PieceSize::expected(std::uint64_t units) const {
    return isUnknown() ? 0 : fixed_ + perUnit_ * static_cast<double>(units);
}

// The last piece was as small as possible and still took too long.
bool PieceSize::needsTrial() const {
    return mayTry_ && all_.pieces > 0 && asked_ == fewest_ && last_.seconds > pieceSeconds;
}

std::uint64_t PieceSize::next(double seconds) {
    std::uint64_t units = fewest_;
    isTrial_ = needsTrial() && cost_->takeTrial();
    if (isTrial_) {
        mayTry_ = false;
        units = 2 * last_.units;
    } else if (fixed_ > 0 && last_.units > 0 && last_.seconds < pieceSeconds + 2 * fixed_) {
        units = times(last_.units, growthWithFixed);
    } else if (!isUnknown()) {
        const double fitting = perUnit_ > 0 ? std::max(seconds, 0.0) / perUnit_ : 1e18;
        units = fitting < 1e18 ? static_cast<std::uint64_t>(fitting) : UINT64_MAX;
        // From what was asked for: rounded down to rows of the picture, a piece might never grow.
        if (last_.units > 0)
            units =
                std::min(units, times(std::max(asked_, last_.units),
                                      fixed_ > 0 ? growthWithFixed : growthAfter(last_.seconds)));
    }
    asked_ = std::max(units, fewest_);
    return asked_;
}

// Whether a larger piece took less time for each unit. Other programs delay single pieces, so that
// two in turn must not.
void PieceSize::compare(const Measured& now) {
    if (all_.pieces > 0 && now.units > last_.units * 3 / 2) {
        const bool isBetter = now.perUnit() < 0.75 * last_.perUnit();
        if (isTrial_ && isBetter) {
            fixed_ = last_.seconds;
            most_ = known_.most = 0; // they were of the fixed time
        }
        failures_ = isBetter ? 0 : failures_ + 1;
        if (failures_ == 2)
            fixed_ = 0;
    }
    fixed_ = std::min(fixed_, now.seconds);
}

void PieceSize::took(std::uint64_t units, double seconds, bool isLast) {
    const bool isUnmeasured = isUnknown();
    // Of a small one, most of the time is that of a submission, or of the driver's compiler.
    if (isLast && pieces_ == 0 && units <= fewest_)
        return;
    const Measured now{.pieces = 1, .units = units, .seconds = seconds};
    compare(now);
    ++pieces_;
    last_ = now;
    perUnit_ = (seconds - fixed_) / static_cast<double>(units);
    if (!isUnmeasured || isLast) {
        all_ = {all_.pieces + 1, all_.units + units, all_.seconds + seconds};
        if (units > largest_.units)
            largest_ = now;
        if (seconds - fixed_ > pieceSeconds / 4) // otherwise mostly the time of a submission
            most_ = std::max(most_, perUnit_);
    }
    if (isLast)
        learn();
    else // a slow part of the picture may follow a quick one
        perUnit_ = std::max(perUnit_, known_.most / 2.0);
}

void PieceSize::learn() const {
    double mean = all_.perUnit(), most = most_;
    if (fixed_ > 0) {
        // Of small pieces, delays would be taken for the time of their units.
        mean = most = (largest_.seconds - std::min(fixed_, largest_.seconds)) /
                      static_cast<double>(largest_.units);
    }
    mean = std::max(mean, 1e-15); // the fixed time may have been all of it
    cost_->set({.mean = static_cast<float>(mean),
                .most = static_cast<float>(std::max(mean, most)),
                .fixed = static_cast<float>(fixed_)});
}

} // namespace tarnwick::gpu
