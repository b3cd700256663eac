// The sound of a media file as samples.
#pragma once

#include "TarnwickPlatform/Movie/MovieError.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// Decodes any file with a sound track that libavcodec reads. One thread at a time. Functions block
// while the file is read.
class SoundFile {
  public:
    static constexpr std::int64_t rate = 48000; // frames in a second, whatever the file has

    // Throws MovieError if the file cannot be read or has no sound.
    static std::unique_ptr<SoundFile> open(const std::filesystem::path& file);
    ~SoundFile();

    // Frames of the whole sound: of the container until the end was read, then counted.
    std::int64_t length() const;

    // Interleaved stereo, left first, of `count` frames from number `first` on; fewer at the end. A
    // single channel is on both sides. Fastest in order; otherwise the file is read from a place
    // before. Damaged parts are skipped.
    std::vector<float> read(std::int64_t first, std::int64_t count);

  private:
    struct Decoder;

    explicit SoundFile(std::unique_ptr<Decoder> decoder);

    std::unique_ptr<Decoder> decoder_;
};

} // namespace tarnwick
