#include "TarnwickRender/FilmSound.h"

#include "TarnwickRender/SoundSamples.h"

#include <algorithm>
#include <thread>

namespace tarnwick {
namespace {

constexpr std::int64_t rate = ShaderAssembler::sampleRate;

const std::shared_ptr<const ShaderProgram>& soundProgramOf(const ExportSegment& segment) {
    return segment.soundProgram ? segment.soundProgram : segment.program;
}

// The samples of one film, evaluated a second at a time.
class Samples {
  public:
    Samples(gpu::Device& device, std::int64_t fps)
        : queue_(device.newCommandQueue()), buffer_(device.newBuffer(rate * soundSampleSize)),
          fps_(fps), perFrame_(rate / fps), silence_(static_cast<std::size_t>(2 * perFrame_)) {}

    // Those of frame `frame` of the entry, whose frames are asked for in order; left, right, left,
    // right. Nothing where the device fails.
    std::optional<std::span<const float>> ofFrame(const ExportTimeline::Entry& entry,
                                                  std::int64_t frame, ExportState& state) {
        if (!isHeard(*entry.segment))
            return silence_;
        const std::int64_t inSecond = frame % fps_;
        if (inSecond == 0 && !evaluate(entry, frame, state))
            return std::nullopt;
        const auto second = soundSamples(*buffer_, rate);
        return second.subspan(static_cast<std::size_t>(2 * perFrame_ * inSecond), silence_.size());
    }

  private:
    bool evaluate(const ExportTimeline::Entry& entry, std::int64_t frame, ExportState& state) {
        if (!queue_ || !buffer_)
            return false;
        const ExportSegment& segment = *entry.segment;
        const std::int64_t frames = std::min(entry.count - frame, fps_);
        // From the whole distance each time, so that no error grows.
        const double start = segment.soundStart.value_or(segment.start) +
                             static_cast<double>(frame) / static_cast<double>(fps_);
        const SoundResult result =
            evaluateSound(*soundProgramOf(segment), *queue_, *buffer_, start,
                          static_cast<std::uint32_t>(frames * perFrame_),
                          segment.soundValues ? *segment.soundValues : segment.values);
        if (result == SoundResult::endedByLoopBudget)
            state.noteLoopBudget();
        return result != SoundResult::failed;
    }

    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> buffer_;
    std::int64_t fps_, perFrame_;
    std::vector<float> silence_; // of one frame
};

// Lets the pictures keep up: otherwise a long film's whole sound would be worked out while its
// first frames are drawn, and wait in memory. Whether to go on.
bool keepPace(std::int64_t index, std::int64_t fps, const ExportState& state) {
    constexpr std::int64_t secondsAhead = 10;
    while (!state.hasFailed() && index > state.pictures() + secondsAhead * fps)
        std::this_thread::sleep_for(std::chrono::milliseconds(10)); // most of a long film's time
    return !state.hasFailed();
}

} // namespace

bool isHeard(const ExportSegment& segment) {
    return segment.sound && soundProgramOf(segment)->hasSound();
}

void writeSound(const ExportTimeline& timeline, gpu::Device& device, AudioInput& input,
                const MovieWriter& writer, ExportState& state, std::chrono::nanoseconds patience) {
    Samples samples(device, timeline.fps);
    auto failedAt = [&](std::int64_t index) {
        state.fail(writer.status() == MovieWriterStatus::failed
                       ? writerFailure(writer)
                       : ExportError(ExportError::Writer{"audio failed at frame " +
                                                         std::to_string(index)}));
    };
    for (const ExportTimeline::Entry& entry : timeline.entries)
        for (std::int64_t frame = 0; frame < entry.count; ++frame) {
            const std::int64_t index = entry.first + frame;
            if (!keepPace(index, timeline.fps, state))
                return;
            const auto found = samples.ofFrame(entry, frame, state);
            if (!found)
                return failedAt(index);
            if (!waitUntilReady(input, writer, state, patience))
                return;
            if (!input.append(*found, {index * (rate / timeline.fps), rate}))
                return failedAt(index);
        }
    input.markAsFinished();
}

} // namespace tarnwick
