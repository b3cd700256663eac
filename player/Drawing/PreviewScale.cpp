#include "player/Drawing/PreviewScale.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int slowFrames = 4;         // before the picture becomes smaller
constexpr int longestPatience = 3600; // frames
constexpr double room = 0.8;          // share of longestFrame that a larger picture may take

} // namespace

void PreviewScale::fix(std::optional<int> divisor) {
    if (divisor)
        divisor = std::clamp(*divisor, 1, largest);
    if (divisor != fixed_)
        restart();
    fixed_ = divisor;
}

void PreviewScale::add(double seconds) {
    if (fixed_)
        return;
    ++sinceLarger_;
    const double growth = divisor_ > 1 ? static_cast<double>(divisor_) / (divisor_ - 1) : 1;
    if (seconds > longestFrame && divisor_ < largest)
        count_ = std::max(count_, 0) + 1;
    else if (divisor_ > 1 && seconds * growth * growth < longestFrame * room)
        count_ = std::min(count_, 0) - 1;
    else
        count_ = 0;
    if (count_ >= slowFrames) {
        if (sinceLarger_ < 2 * slowFrames) // it had just become larger: wait longer next time
            patience_ = std::min(2 * patience_, longestPatience);
        ++divisor_;
        count_ = 0;
    } else if (-count_ >= patience_) {
        --divisor_;
        count_ = 0;
        sinceLarger_ = 0;
    }
}

} // namespace tarnwick::player
