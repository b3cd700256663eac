#include "TarnwickGPU/Commands/PieceSize.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

// A piece has at most so many times the units of the one before. The fixed time is less certain:
// another part of the picture may have been slower.
constexpr std::uint64_t growth = 8, growthWithFixed = 2;

} // namespace

PieceSize::PieceSize(WorkCost& cost, std::uint64_t fewest)
    : cost_(&cost), fewest_(fewest), known_(cost.seconds()), fixed_(known_.fixed),
      perUnit_(known_.most) {}

double PieceSize::expected(std::uint64_t units) const {
    return isUnknown() ? 0 : fixed_ + perUnit_ * static_cast<double>(units);
}

// The last piece was as small as possible and still took too long.
bool PieceSize::needsTrial() const {
    return mayTry_ && measuredUnits_ > 0 && asked_ == fewest_ && lastSeconds_ > pieceSeconds;
}

std::uint64_t PieceSize::next(double seconds) {
    std::uint64_t units = fewest_;
    isTrial_ = needsTrial() && cost_->takeTrial();
    if (isTrial_) {
        mayTry_ = false;
        units = 2 * lastUnits_;
    } else if (!isUnknown()) {
        const double fitting = perUnit_ > 0 ? std::max(seconds, 0.0) / perUnit_ : 1e18;
        units = fitting < 1e18 ? static_cast<std::uint64_t>(fitting) : UINT64_MAX;
        if (lastUnits_ > 0)
            units = std::min(units, (fixed_ > 0 ? growthWithFixed : growth) * lastUnits_);
    }
    asked_ = std::max(units, fewest_);
    return asked_;
}

// From two pieces of different sizes.
void PieceSize::estimateFixed(std::uint64_t units, double seconds) {
    if ((isTrial_ || fixed_ > 0) && measuredUnits_ > 0 && units > lastUnits_ * 3 / 2) {
        const auto before = static_cast<double>(lastUnits_), now = static_cast<double>(units);
        const double shorter = std::min(seconds, lastSeconds_);
        const double fixed = (lastSeconds_ * now - seconds * before) / (now - before);
        if (fixed > shorter / 2 && fixed_ <= 0)
            most_ = known_.most = 0; // they were of the fixed time
        fixed_ = fixed > shorter / 2 ? std::min(fixed, shorter) : 0;
    }
    fixed_ = std::min(fixed_, seconds);
}

void PieceSize::took(std::uint64_t units, double seconds, bool isLast) {
    const bool isUnmeasured = isUnknown();
    // Of a small one, most of the time is that of a submission, or of the driver's compiler.
    if (isLast && pieces_ == 0 && units <= fewest_)
        return;
    estimateFixed(units, seconds);
    const double ofUnits = seconds - fixed_;
    ++pieces_;
    lastUnits_ = units;
    lastSeconds_ = seconds;
    perUnit_ = ofUnits / static_cast<double>(units);
    if (!isUnmeasured || isLast) {
        ++measuredPieces_;
        measuredUnits_ += units;
        measuredSeconds_ += seconds;
        if (ofUnits > pieceSeconds / 4) // otherwise mostly the time of a submission
            most_ = std::max(most_, perUnit_);
    }
    // A slow part of the picture may follow a quick one.
    if (!isLast)
        perUnit_ = std::max(perUnit_, known_.most / 2.0);
    else
        learn();
}

void PieceSize::learn() {
    // The fixed time may have been all of it.
    const double ofUnits = measuredSeconds_ - fixed_ * static_cast<double>(measuredPieces_);
    const double mean = std::max(ofUnits / static_cast<double>(measuredUnits_), 1e-15);
    cost_->set({.mean = static_cast<float>(mean),
                .most = static_cast<float>(std::max(mean, most_)),
                .fixed = static_cast<float>(fixed_)});
}

} // namespace tarnwick::gpu
