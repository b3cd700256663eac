#include "player/Sound/PerformedSound.h"

#include "player/Sound/SampleRing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double onGrid = 1e-3; // frames

} // namespace

PerformedSound::PerformedSound(std::shared_ptr<EpisodeSound> own,
                               std::shared_ptr<const Performance> performance)
    : own_(std::move(own)), timeline_(std::move(performance)) {}

PerformedSound::PerformedSound(std::shared_ptr<FileSound> file,
                               std::shared_ptr<const Performance> performance)
    : file_(std::move(file)), timeline_(std::move(performance)) {}

// Null while it is not there yet.
const PerformedSound::Second* PerformedSound::second(std::int64_t number) {
    Second& kept = seconds_[static_cast<std::size_t>(number % 2)];
    if (kept.number == number)
        return &kept;
    kept.number = number;
    if (evaluate(kept))
        return &kept;
    kept.number = -1;
    return nullptr;
}

bool PerformedSound::evaluate(Second& second) {
    second.stereo.assign(2 * soundRate, 0.0f);
    std::size_t at = 0;
    for (const SoundPiece& piece :
         timeline_.pieces(static_cast<double>(second.number), soundRate, soundRate)) {
        const std::size_t count = 2 * static_cast<std::size_t>(piece.count);
        if (!piece.isSilent && !evaluatePiece(piece, std::span(second.stereo).subspan(at, count)))
            return false;
        at += count;
    }
    return true;
}

bool PerformedSound::evaluatePiece(const SoundPiece& piece, std::span<float> stereo) {
    const double rate = soundRate / piece.speed;
    if (file_)
        return piece.file != file_->file().string() || file_->samples(piece.start, rate, stereo);
    if (const auto found =
            own_->run(piece.start, rate, static_cast<std::uint32_t>(piece.count), piece.values))
        std::ranges::transform(*found, stereo.begin(),
                               [](float sample) { return std::isfinite(sample) ? sample : 0.0f; });
    return true;
}

// Absent while it is not there yet.
std::optional<float> PerformedSound::sampleAt(std::int64_t frame, std::size_t side) {
    if (frame < 0)
        return 0.0f;
    const Second* found = second(frame / soundRate);
    if (found == nullptr)
        return std::nullopt;
    return found->stereo[2 * static_cast<std::size_t>(frame % soundRate) + side];
}

bool PerformedSound::samples(double start, double rate, std::span<float> stereo) {
    const double first = start * soundRate, step = soundRate / rate;
    const bool isOnGrid = rate == soundRate && std::abs(first - std::round(first)) < onGrid;
    for (std::size_t at = 0; at < stereo.size(); ++at) {
        const double place =
            (isOnGrid ? std::round(first) : first) + static_cast<double>(at / 2) * step;
        const auto frame = static_cast<std::int64_t>(std::floor(place));
        const auto part = static_cast<float>(place - static_cast<double>(frame));
        const auto before = sampleAt(frame, at % 2);
        const auto after = part == 0 ? before : sampleAt(frame + 1, at % 2);
        if (!before || !after)
            return false;
        stereo[at] = part == 0 ? *before : *before + part * (*after - *before);
    }
    return true;
}

} // namespace tarnwick::player
