#include "TarnwickRender/Movies/MovieSound.h"

#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickCore/Performance/SoundPieces.h"
#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"
#include "TarnwickRender/Sound/SoundSamples.h"

#include <algorithm>
#include <map>
#include <thread>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::int64_t rate = ShaderAssembler::sampleRate;

const std::shared_ptr<const ShaderProgram>& soundProgramOf(const ExportSegment& segment) {
    return segment.soundProgram ? segment.soundProgram : segment.program;
}

bool hearsProgram(const ExportSegment& segment) {
    return segment.sound && soundProgramOf(segment)->hasSound();
}

bool playsInputs(const ExportSegment& segment) {
    const Performance* performance = segment.timeline.performance().get();
    return segment.playsInputs && performance != nullptr && playsSound(*performance);
}

// The sound files that are added to a piece.
std::vector<std::filesystem::path> filesOf(const ExportSegment& segment, const SoundPiece& piece) {
    std::vector<std::filesystem::path> files;
    if (!segment.soundFile.empty())
        files.push_back(segment.soundFile);
    if (segment.playsInputs && piece.isFilePlayed)
        files.emplace_back(piece.file);
    return files;
}

// For a movie that is one loop the encoder also gets the samples around it, which are those of the
// loop (see AudioSettings). Otherwise its errors at both ends are audible where they meet.
bool isOneLoop(const ExportTimeline& timeline) {
    const ExportTimeline::Entry& entry = timeline.entries.front();
    return timeline.entries.size() == 1 && entry.segment->loopSound && entry.fade > 0;
}

// The encoder of libavcodec 59 needs most of a second to choose its quantisers: for a sine of
// amplitude 0.7 the first samples differ by up to 0.02, those after 0.8 s by less than 0.001.
constexpr std::int64_t leadIn = 46 * AudioSettings::packet;
// The rest of the last packet, the packet that it is decoded with, and one of lookahead.
constexpr std::int64_t leadOut = 3 * AudioSettings::packet;

// The samples of one movie, evaluated a second at a time.
class Samples {
  public:
    Samples(gpu::Device& device, std::int64_t fps)
        : queue_(device.newCommandQueue(gpu::QueueUse::beside)),
          buffer_(device.newBuffer(rate * soundSampleSize)), fps_(fps), perFrame_(rate / fps),
          second_(2 * rate), silence_(static_cast<std::size_t>(2 * perFrame_)) {}

    // The samples of frame `frame` of the entry: left, right, left, right. Absent if the device
    // fails. Fastest in the order of the frames.
    std::optional<std::span<const float>> ofFrame(const ExportTimeline::Entry& entry,
                                                  std::int64_t frame, ExportState& state) {
        const ExportSegment& segment = *entry.segment;
        if (!hearsProgram(segment) && segment.soundFile.empty() && !segment.playsInputs)
            return silence_;
        const std::int64_t inSecond = frame % fps_;
        if (!fillSecond(entry, frame - inSecond, state))
            return std::nullopt;
        return std::span<const float>(second_).subspan(
            static_cast<std::size_t>(2 * perFrame_ * inSecond), silence_.size());
    }

    // `count` samples of the endlessly repeated entry, from `first` on, which may be below 0.
    std::optional<std::vector<float>> ofLoop(const ExportTimeline::Entry& entry, std::int64_t first,
                                             std::int64_t count, ExportState& state) {
        const std::int64_t length = entry.count * perFrame_;
        std::vector<float> samples;
        for (std::int64_t sample = first; sample < first + count;) {
            const std::int64_t inLoop = (sample % length + length) % length;
            const auto frame = ofFrame(entry, inLoop / perFrame_, state);
            if (!frame)
                return std::nullopt;
            const std::int64_t inFrame = inLoop % perFrame_;
            const std::int64_t run = std::min(perFrame_ - inFrame, first + count - sample);
            const auto found = frame->subspan(static_cast<std::size_t>(2 * inFrame),
                                              static_cast<std::size_t>(2 * run));
            samples.insert(samples.end(), found.begin(), found.end());
            sample += run;
        }
        return samples;
    }

  private:
    // Evaluates the second, or the rest of the entry, from `frame` on. The end of a loop is mixed
    // with the samples before the entry's beginning.
    bool fillSecond(const ExportTimeline::Entry& entry, std::int64_t frame, ExportState& state) {
        if (filled_ == entry.first + frame)
            return true;
        filled_.reset();
        if (!evaluateSecond(entry, frame, state))
            return false;
        filled_ = entry.first + frame;
        return true;
    }

    bool evaluateSecond(const ExportTimeline::Entry& entry, std::int64_t frame,
                        ExportState& state) {
        const std::int64_t end = std::min(frame + fps_, entry.count);
        const auto own = evaluate(*entry.segment, frame, end - frame, state);
        if (!own)
            return false;
        std::copy(own->begin(), own->end(), second_.begin());
        const std::int64_t mixed = std::max(frame, entry.count - entry.fade);
        if (!entry.segment->loopSound || mixed >= end)
            return true;
        const auto leadIn = evaluate(*entry.segment, mixed - entry.count, end - mixed, state);
        if (!leadIn)
            return false;
        const auto at = static_cast<std::ptrdiff_t>(2 * perFrame_ * (mixed - frame));
        mix(*leadIn, second_.begin() + at, (entry.count - mixed) * perFrame_,
            entry.fade * perFrame_);
        return true;
    }

    // The entry has `left` samples from the first one on.
    static void mix(std::span<const float> leadIn, std::vector<float>::iterator own,
                    std::int64_t left, std::int64_t fade) {
        for (std::size_t at = 0; at < leadIn.size(); ++at, ++own) {
            const float weight = ownWeight(left - static_cast<std::int64_t>(at / 2), fade);
            *own = *own * weight + leadIn[at] * (1 - weight);
        }
    }

    // The samples of `frames` frames, at most a second, from the segment's `frame` on, which may be
    // below 0. Valid until the next call.
    std::optional<std::span<const float>> evaluate(const ExportSegment& segment, std::int64_t frame,
                                                   std::int64_t frames, ExportState& state) {
        if (!queue_ || !buffer_)
            return std::nullopt;
        evaluated_.clear();
        for (const SoundPiece& piece : piecesOf(segment, frame, frames))
            if (!evaluatePiece(segment, piece, state))
                return std::nullopt;
        return evaluated_;
    }

    std::vector<SoundPiece> piecesOf(const ExportSegment& segment, std::int64_t frame,
                                     std::int64_t frames) {
        // Computed from the whole distance, so that errors do not add up.
        const double start = segment.soundStart.value_or(segment.start) +
                             static_cast<double>(frame) / static_cast<double>(fps_);
        const std::int64_t count = frames * perFrame_;
        if (std::exchange(evaluatedSegment_, &segment) != &segment)
            timeline_.emplace(segment.timeline);
        std::vector<SoundPiece> pieces = timeline_->pieces(start, count, rate);
        if (segment.soundValues && !segment.timeline.performance())
            pieces.front().values = *segment.soundValues;
        return pieces;
    }

    bool evaluatePiece(const ExportSegment& segment, const SoundPiece& piece, ExportState& state) {
        const auto count = static_cast<std::size_t>(piece.count);
        const std::size_t before = evaluated_.size();
        if (piece.isSilent || !hearsProgram(segment))
            evaluated_.resize(before + 2 * count);
        else if (!evaluateProgram(segment, piece, state))
            return false;
        if (!piece.isSilent)
            for (const std::filesystem::path& file : filesOf(segment, piece))
                addFile(file, piece, std::span(evaluated_).subspan(before));
        return true;
    }

    bool evaluateProgram(const ExportSegment& segment, const SoundPiece& piece,
                         ExportState& state) {
        const auto count = static_cast<std::size_t>(piece.count);
        auto commands = startSound(*soundProgramOf(segment)->parts(), *queue_, *buffer_,
                                   piece.start, static_cast<std::uint32_t>(count), piece.values,
                                   static_cast<double>(rate) / piece.speed);
        const SoundResult result = commands ? finishSound(*commands) : SoundResult::failed;
        if (result == SoundResult::failed)
            return false;
        if (result == SoundResult::endedByLoopBudget)
            state.noteLoopBudget();
        const auto samples = soundSamples(*buffer_, count);
        evaluated_.insert(evaluated_.end(), samples.begin(), samples.end());
        return true;
    }

    // Throws MovieError.
    void addFile(const std::filesystem::path& name, const SoundPiece& piece,
                 std::span<float> stereo) {
        std::unique_ptr<LoopedSound>& file = files_[name];
        if (!file)
            file = LoopedSound::open(name);
        ofFile_.resize(stereo.size());
        file->samples(piece.start, static_cast<double>(rate) / piece.speed, ofFile_);
        for (std::size_t at = 0; at < stereo.size(); ++at)
            stereo[at] = std::clamp(stereo[at] + ofFile_[at], -1.0f, 1.0f);
    }

    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> buffer_;
    std::int64_t fps_, perFrame_;
    std::vector<float> second_;          // the current second
    std::optional<std::int64_t> filled_; // the movie's frame that it begins with
    std::vector<float> silence_;         // of one frame
    std::vector<float> evaluated_;
    std::map<std::filesystem::path, std::unique_ptr<LoopedSound>> files_;
    std::vector<float> ofFile_;
    const ExportSegment* evaluatedSegment_ = nullptr; // the last one
    std::optional<TimelineSound> timeline_;           // of it
};

// Waits for the pictures: otherwise the whole sound of a long movie would be rendered with its
// first frames, and stay in memory. False to stop.
bool keepPace(std::int64_t index, std::int64_t fps, const ExportState& state) {
    constexpr std::int64_t secondsAhead = 10;
    while (!state.hasFailed() && index > state.pictures() + secondsAhead * fps)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return !state.hasFailed();
}

} // namespace

bool isHeard(const ExportSegment& segment) {
    return hearsProgram(segment) || !segment.soundFile.empty() || playsInputs(segment);
}

AudioSettings soundSettings(const ExportTimeline& timeline) {
    AudioSettings settings;
    if (isOneLoop(timeline)) {
        settings.leadIn = leadIn;
        settings.length = timeline.frameCount() * (rate / timeline.fps);
    }
    return settings;
}

namespace {

// The samples of an export, on one ground after the other.
class GroundedSamples {
  public:
    GroundedSamples(std::shared_ptr<const ExportGround> ground, ExportState& state)
        : state_(state), ground_(std::move(ground)) {
        start();
    }

    const ExportTimeline& timeline() const { return ground_->timeline; }

    // What `evaluate` gives for the samples and the timeline; absent if the device fails.
    template <typename Evaluate> auto evaluated(const Evaluate& evaluate) {
        auto found = evaluate(*samples_, timeline());
        while (!found && ground_->stage.device->isLost()) {
            auto next = state_.groundAfter(*ground_);
            if (!next)
                break;
            samples_.reset();
            ground_ = std::move(next);
            start();
            found = evaluate(*samples_, timeline());
        }
        return found;
    }

  private:
    void start() { samples_.emplace(*ground_->stage.device, timeline().fps); }

    ExportState& state_;
    std::shared_ptr<const ExportGround> ground_;
    std::optional<Samples> samples_;
};

// Throws MovieError for a sound file that cannot be read.
void writeSamples(GroundedSamples& samples, AudioInput& input, const MovieWriter& writer,
                  ExportState& state, std::chrono::nanoseconds patience) {
    const std::int64_t fps = samples.timeline().fps, perFrame = rate / fps;
    const bool isLoop = isOneLoop(samples.timeline());
    const std::size_t entryCount = samples.timeline().entries.size();
    // False if samples could not be rendered or appended; the error names `frame`.
    auto append = [&](const auto& found, std::int64_t first, std::int64_t frame) {
        if (found && !waitUntilReady(input, writer, state, patience))
            return false;
        if (found && input.append(*found, {first, rate}))
            return true;
        state.fail(writer.status() == MovieWriterStatus::failed
                       ? writerError(writer)
                       : ExportError(ExportError::Writer{"audio failed at frame " +
                                                         std::to_string(frame)}));
        return false;
    };
    auto ofLoop = [&](std::int64_t first, std::int64_t count) {
        return samples.evaluated([&](Samples& on, const ExportTimeline& timeline) {
            return on.ofLoop(timeline.entries.front(), first, count, state);
        });
    };
    if (isLoop && !append(ofLoop(-leadIn, leadIn), -leadIn, 0))
        return;
    std::int64_t frame = 0;
    for (std::size_t entry = 0; entry < entryCount; ++entry)
        for (; frame < samples.timeline().entries[entry].end(); ++frame) {
            if (!keepPace(frame, fps, state))
                return;
            const auto found = samples.evaluated([&](Samples& on, const ExportTimeline& timeline) {
                const ExportTimeline::Entry& of = timeline.entries[entry];
                return on.ofFrame(of, frame - of.first, state);
            });
            if (!append(found, frame * perFrame, frame))
                return;
        }
    const std::int64_t last = samples.timeline().frameCount() - 1;
    if (isLoop && !append(ofLoop(0, leadOut), (last + 1) * perFrame, last))
        return;
    input.markAsFinished();
}

} // namespace

void writeSound(std::shared_ptr<const ExportGround> ground, AudioInput& input,
                const MovieWriter& writer, ExportState& state, std::chrono::nanoseconds patience) {
    try {
        GroundedSamples samples(std::move(ground), state);
        writeSamples(samples, input, writer, state, patience);
    } catch (const MovieError& error) {
        state.fail(ExportError(ExportError::Input{error.what()}));
    }
}

} // namespace tarnwick
