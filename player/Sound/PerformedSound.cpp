#include "player/Sound/PerformedSound.h"

#include "player/Sound/SampleRing.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double onGrid = 1e-3; // frames

} // namespace

PerformedSound::PerformedSound(std::shared_ptr<EpisodeSound> own,
                               std::shared_ptr<const Performance> performance)
    : own_(std::move(own)), timeline_(std::move(performance)) {}

const PerformedSound::Second& PerformedSound::second(std::int64_t number) {
    Second& kept = seconds_[static_cast<std::size_t>(number % 2)];
    if (std::exchange(kept.number, number) != number)
        evaluate(kept);
    return kept;
}

void PerformedSound::evaluate(Second& second) {
    second.stereo.clear();
    for (const SoundPiece& piece :
         timeline_.pieces(static_cast<double>(second.number), soundRate, soundRate)) {
        const auto end = second.stereo.size() + 2 * static_cast<std::size_t>(piece.count);
        if (!piece.isSilent)
            if (const auto found = own_->run(piece.start, soundRate / piece.speed,
                                             static_cast<std::uint32_t>(piece.count), piece.values))
                std::ranges::transform(*found, std::back_inserter(second.stereo), [](float sample) {
                    return std::isfinite(sample) ? sample : 0.0f;
                });
        second.stereo.resize(end);
    }
}

float PerformedSound::sampleAt(std::int64_t frame, std::size_t side) {
    if (frame < 0)
        return 0;
    return second(frame / soundRate).stereo[2 * static_cast<std::size_t>(frame % soundRate) + side];
}

bool PerformedSound::samples(double start, double rate, std::span<float> stereo) {
    const double first = start * soundRate, step = soundRate / rate;
    const bool isOnGrid = rate == soundRate && std::abs(first - std::round(first)) < onGrid;
    for (std::size_t at = 0; at < stereo.size(); ++at) {
        const double place =
            (isOnGrid ? std::round(first) : first) + static_cast<double>(at / 2) * step;
        const auto frame = static_cast<std::int64_t>(std::floor(place));
        const auto part = static_cast<float>(place - static_cast<double>(frame));
        const float before = sampleAt(frame, at % 2);
        stereo[at] = part == 0 ? before : before + part * (sampleAt(frame + 1, at % 2) - before);
    }
    return true;
}

} // namespace tarnwick::player
