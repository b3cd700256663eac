// The sound track of the writer of files, up to its packets.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/SoundEncoder.h"
#include "TarnwickPlatform/Movie/MovieInput.h"
#include "TarnwickPlatform/Movie/Writing/BoundedQueue.h"
#include "TarnwickPlatform/Movie/Writing/WriterState.h"

#include <atomic>
#include <vector>

namespace tarnwick {

class FileAudioInput : public AudioInput {
  public:
    FileAudioInput(const AudioSettings& settings, WriterState& state);

    std::string_view mediaType() const override { return "soun"; }
    bool isReadyForMoreMediaData() const override {
        return begun && runs.hasRoom() && state.status() == MovieWriterStatus::writing;
    }
    void markAsFinished() override { runs.finish(); }
    bool append(std::span<const float> samples, MediaTime time) override;

    void begin() { begun = true; }
    void abandon() { runs.abandon(); }
    void encodeSamples(const SoundPacketSink& sink);

    const AudioSettings settings;
    std::unique_ptr<SoundEncoder> encoder;

  private:
    WriterState& state;
    BoundedQueue<std::vector<float>> runs;
    std::atomic<bool> begun = false;
    std::int64_t nextSample;
};

} // namespace tarnwick
