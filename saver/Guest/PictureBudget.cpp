#include "saver/Guest/PictureBudget.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr double newest = 0.25; // weight of the newest frame in the mean
constexpr double room = 0.8;    // of the budget, that a larger picture may take

} // namespace

void PictureBudget::spend(double cost, double now) {
    // Unused time is not saved up.
    freeAt_ = std::clamp(freeAt_, now - 1 / rate_, now + longestDebt) + cost / share_;
    cost_ = frames_ == 0 ? cost : cost_ + newest * (cost - cost_);
    ++frames_;
    const bool isFarTooMuch = frames_ > 1 && cost_ > 2 * share_ / rate_;
    if (frames_ >= measuredFrames || isFarTooMuch)
        choose(now);
}

double PictureBudget::rest(double now) const {
    return std::clamp(freeAt_ - now, 0.0, longestDebt);
}

// A frame costs about as much as it has pixels.
void PictureBudget::choose(double now) {
    const double allowed = share_ / rate_;
    const auto costAt = [&](std::size_t step) {
        const double ratio = scales[step] / scales[step_];
        return cost_ * ratio * ratio;
    };
    std::size_t best = step_;
    while (best + 1 < scales.size() && costAt(best) > allowed)
        ++best;
    if (best == step_ && now - changed_ > patience)
        while (best > 0 && costAt(best - 1) < room * allowed)
            --best;
    if (best == step_)
        return;
    step_ = best;
    frames_ = 0;
    changed_ = now;
}

} // namespace tarnwick
