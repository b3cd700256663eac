// Samples that were rendered ahead, on their way to the sound device.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

namespace tarnwick::player {

inline constexpr std::int64_t soundRate = 48000; // frames in a second, everywhere in the player

// One sample of each stereo pair, left first. The device mixes the pairs.
struct SoundFrame {
    std::array<float, 2> own{};  // of the episode
    std::array<float, 2> file{}; // of a media file

    bool operator==(const SoundFrame&) const = default;
};

// A lock-free ring for one renderer and one device. Frames have numbers that count from the start
// of the ring; number n is heard at a time that SoundClock has. The device takes each number once,
// whether or not it was written. The renderer may write numbers again that the device has not
// taken, so that a change is heard at once although much is rendered ahead.
class SampleRing {
  public:
    // `capacity` in frames. A part of it remains behind the device, for copyBefore().
    explicit SampleRing(std::int64_t capacity);

    // The device's thread. Takes the next frames. Returns the number of those that were written;
    // the others are silent.
    std::int64_t take(std::span<SoundFrame> out);

    // The number after the last one that the device takes or has taken. Any thread.
    std::int64_t taken() const { return taken_.load(); }

    // The renderer's thread, as everything below but copyBefore().
    // The number after the last one that is written.
    std::int64_t written() const { return written_.load(std::memory_order_relaxed); }
    // Adds frames at written(). At most capacity / 2 frames may be ahead of the device.
    void append(std::span<const SoundFrame> frames);
    // Continues with `frames` from number `from` on, at least taken(). The first `fade` frames are
    // mixed with those that are there, so that nothing clicks. False, and nothing is changed, if
    // the device has taken `from` meanwhile.
    bool replace(std::int64_t from, std::span<const SoundFrame> frames, std::int64_t fade);

    // The frames before number `end`, which the device has taken; silence before number 0. Any
    // thread, if `end` is less than half the capacity behind the device.
    void copyBefore(std::int64_t end, std::span<SoundFrame> out) const;

  private:
    SoundFrame& slot(std::int64_t number) {
        return frames_[static_cast<std::size_t>(number & mask_)];
    }
    const SoundFrame& slot(std::int64_t number) const {
        return frames_[static_cast<std::size_t>(number & mask_)];
    }
    void put(std::int64_t from, std::span<const SoundFrame> frames);

    std::vector<SoundFrame> frames_; // as many as a power of two
    std::int64_t mask_;
    std::atomic<std::int64_t> taken_ = 0;
    std::atomic<std::int64_t> written_ = 0;
};

// The weighted mean: `share` of `to`, the rest of `from`.
SoundFrame mixed(const SoundFrame& from, const SoundFrame& to, float share);

} // namespace tarnwick::player
