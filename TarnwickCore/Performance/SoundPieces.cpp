#include "TarnwickCore/Performance/SoundPieces.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

namespace tarnwick {
namespace {

class Pieces {
  public:
    Pieces(PerformanceCursor& cursor, std::int64_t end, std::int64_t rate)
        : cursor_(cursor), end_(end), rate_(static_cast<double>(rate)) {}

    SoundPiece from(std::int64_t sample) {
        const PerformedState& state = cursor_.at(timeOf(sample));
        const Transport& transport = state.transport;
        const std::int64_t next = nextChange(sample);
        const double start = transport.timeAt(timeOf(sample));
        const bool isAtZero = transport.speed < 0 && start <= 0;
        if (!transport.isPlaying || transport.speed == 0 || isAtZero)
            return {.count = next - sample, .isSilent = true};
        SoundPiece piece{.count = turn(transport, sample, next) - sample,
                         .start = start,
                         .speed = transport.speed,
                         .values = state.settings.values};
        if (const auto file = state.inputs.find(soundInput); file != state.inputs.end()) {
            piece.file = file->second.file;
            piece.isFilePlayed = file->second.isPlayed;
        }
        return piece;
    }

  private:
    double timeOf(std::int64_t sample) const { return static_cast<double>(sample) / rate_; }

    // Whether a piece ends with the change, or it is after the last piece.
    bool isEnd(const Performance::Change& change) const {
        const auto* input = std::get_if<Performance::Input>(&change.what);
        return change.time >= timeOf(end_) || std::holds_alternative<Transport>(change.what) ||
               std::holds_alternative<Performance::Value>(change.what) ||
               (input != nullptr && input->name == soundInput);
    }

    // The sample after `sample` with the next change of the clock, of a value or of the sound file.
    std::int64_t nextChange(std::int64_t sample) const {
        const auto& changes = cursor_.performance().changes;
        const auto first = changes.begin() + static_cast<std::ptrdiff_t>(cursor_.changesMade());
        const auto next = std::find_if(first, changes.end(),
                                       [this](const auto& change) { return isEnd(change); });
        if (next == changes.end() || next->time >= timeOf(end_))
            return end_;
        const auto at = static_cast<std::int64_t>(std::ceil(next->time * rate_));
        return std::clamp(at, sample + 1, end_);
    }

    // The first sample after `sample`, before `end`, at which the clock wraps or reaches 0;
    // `end` without such a sample.
    std::int64_t turn(const Transport& transport, std::int64_t sample, std::int64_t end) const {
        const auto isTurned = [&, lap = transport.lapAt(timeOf(sample))](std::int64_t at) {
            return transport.lapAt(timeOf(at)) != lap ||
                   (transport.speed < 0 && transport.timeAt(timeOf(at)) <= 0);
        };
        std::int64_t low = sample,
                     high = end; // not turned at low; turned at high, or it is the end
        while (high - low > 1) {
            const std::int64_t middle = low + (high - low) / 2;
            (isTurned(middle) ? high : low) = middle;
        }
        return high;
    }

    PerformanceCursor& cursor_;
    std::int64_t end_;
    double rate_;
};

} // namespace

std::vector<SoundPiece> soundPieces(PerformanceCursor& cursor, std::int64_t first,
                                    std::int64_t count, std::int64_t rate) {
    Pieces pieces(cursor, first + count, rate);
    std::vector<SoundPiece> found;
    for (std::int64_t sample = first; sample < first + count;) {
        found.push_back(pieces.from(sample));
        sample += found.back().count;
    }
    return found;
}

TimelineSound::TimelineSound(Timeline timeline) : timeline_(std::move(timeline)) {
    if (timeline_.performance())
        cursor_.emplace(timeline_.performance());
}

std::vector<SoundPiece> TimelineSound::pieces(double start, std::int64_t count, std::int64_t rate) {
    if (!cursor_)
        return {{.count = count, .start = start, .values = timeline_.settings().values}};
    return soundPieces(*cursor_, std::llround(start * static_cast<double>(rate)), count, rate);
}

} // namespace tarnwick
