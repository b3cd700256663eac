// A sound of a performance that is replayed: that of its export.
#pragma once

#include "TarnwickCore/Performance/SoundPieces.h"
#include "player/Sound/EpisodeSound.h"
#include "player/Sound/FileSound.h"

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick::player {

// The time is that of the performance, in seconds.
class PerformedSound : public TimedSound {
  public:
    // The episode's own. `performance` is fitted to the parameters of its program.
    PerformedSound(std::shared_ptr<EpisodeSound> own,
                   std::shared_ptr<const Performance> performance);
    // That of a file, while it is the sound input.
    PerformedSound(std::shared_ptr<FileSound> file, std::shared_ptr<const Performance> performance);

    const std::shared_ptr<EpisodeSound>& own() const { return own_; } // null for a file
    const std::shared_ptr<const Performance>& performance() const {
        return timeline_.timeline().performance();
    }

    // At soundRate, bit by bit the samples of an export from the beginning of the performance.
    // Other rates are interpolated. Silent if the device fails. False while a file is not decoded.
    bool samples(double start, double rate, std::span<float> stereo) override;

  private:
    // Evaluated as an export evaluates it: second by second.
    struct Second {
        std::int64_t number = -1; // -1: none
        std::vector<float> stereo;
    };

    const Second* second(std::int64_t number);
    bool evaluate(Second& second);
    bool evaluatePiece(const SoundPiece& piece, std::span<float> stereo);
    std::optional<float> sampleAt(std::int64_t frame, std::size_t side);

    std::shared_ptr<EpisodeSound> own_; // one of the two is null
    std::shared_ptr<FileSound> file_;
    TimelineSound timeline_;
    std::array<Second, 2> seconds_; // by the lowest bit of their number
};

} // namespace tarnwick::player
