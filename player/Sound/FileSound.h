// The sound of a media file, which follows the time of the episode and repeats.
#pragma once

#include "player/Sound/TimedSound.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace tarnwick::player {

// The file is opened and decoded on a thread of its own, a few seconds ahead of the place that is
// asked for; the last minute of decoded sound is kept. Any thread calls samples(), which does not
// wait: a place that is not decoded yet is not there yet.
class FileSound : public TimedSound {
  public:
    // `fail` gets one sentence, on the decoding thread, if the file cannot be read. The sound is
    // silent then.
    FileSound(std::filesystem::path file, std::function<void(const std::string&)> fail);
    // Waits for the file being read.
    ~FileSound() override;
    FileSound(const FileSound&) = delete;
    FileSound& operator=(const FileSound&) = delete;

    const std::filesystem::path& file() const;

    // Between two frames of the file the sound is interpolated. Before time 0 it is silent.
    bool samples(double start, double rate, std::span<float> stereo) override;
    // The same, and waits until the place is decoded, at most so long.
    bool samplesWithin(std::chrono::milliseconds longest, double start, double rate,
                       std::span<float> stereo);

  private:
    struct Decoding;

    std::unique_ptr<Decoding> decoding_;
};

} // namespace tarnwick::player
