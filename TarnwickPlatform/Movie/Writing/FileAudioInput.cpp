#include "TarnwickPlatform/Movie/Writing/FileAudioInput.h"

namespace tarnwick {

namespace {

constexpr std::size_t queuedSampleRuns = 64;

} // namespace

FileAudioInput::FileAudioInput(const AudioSettings& settings, WriterState& state)
    : settings(settings), state(state), runs(queuedSampleRuns), nextSample(-settings.leadIn) {}

bool FileAudioInput::append(std::span<const float> samples, MediaTime time) {
    const auto channels = static_cast<std::size_t>(settings.channels);
    if (!isReadyForMoreMediaData() || samples.size() % channels != 0)
        return false;
    if (time != MediaTime{nextSample, static_cast<std::int32_t>(settings.sampleRate)}) {
        state.fail("Samples were appended out of their order.");
        return false;
    }
    if (!runs.tryPush({samples.begin(), samples.end()}))
        return false;
    nextSample += static_cast<std::int64_t>(samples.size() / channels);
    return true;
}

void FileAudioInput::encodeSamples(const SoundPacketSink& sink) {
    while (std::optional<std::vector<float>> run = runs.pop())
        encoder->encode(*run, sink);
    if (state.status() == MovieWriterStatus::writing)
        encoder->finish(sink);
}

} // namespace tarnwick
