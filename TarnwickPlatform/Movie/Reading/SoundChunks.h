// The decoded sound of a media file that repeats, in chunks of a second.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick {

// A part of a sound over time: frame i is the one at `start` + i / `rate` seconds.
struct SoundStretch {
    double start = 0;       // seconds
    double rate = 48000;    // frames per second, not 0; below 0: backwards
    std::int64_t count = 0; // frames
};

// Keeps about a minute. One thread at a time.
class SoundChunks {
  public:
    static constexpr std::int64_t framesOfChunk = 48000; // at SoundFile::rate

    // Frames of the whole file. 0: silence.
    void setLength(std::int64_t frames) { length_ = frames; }
    std::int64_t length() const { return length_; }

    // The first chunk that is missing of the stretch, in its direction, and of the `ahead` chunks
    // after it; absent if all are there.
    std::optional<std::int64_t> missing(const SoundStretch& stretch, std::int64_t ahead = 0) const;
    // Interleaved stereo of chunk `number`, from its first frame on. Drops the chunks that are the
    // farthest from it.
    void keep(std::int64_t number, std::vector<float> stereo);

    // Interleaved stereo of the stretch. The file repeats; before time 0 it is silent, and so are
    // missing chunks. Between two frames of the file the sound is interpolated.
    void fill(const SoundStretch& stretch, std::span<float> stereo) const;

  private:
    std::vector<std::int64_t> chunksOf(const SoundStretch& stretch) const;
    std::int64_t chunkCount() const { return (length_ + framesOfChunk - 1) / framesOfChunk; }
    std::int64_t wrapped(std::int64_t frame) const { return (frame % length_ + length_) % length_; }
    std::int64_t distance(std::int64_t one, std::int64_t other) const;
    float sample(std::int64_t frame, std::size_t side) const;
    float at(double place, std::size_t side) const;

    std::map<std::int64_t, std::vector<float>> chunks_; // by their number
    std::int64_t length_ = 0;
};

} // namespace tarnwick
