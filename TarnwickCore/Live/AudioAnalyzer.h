// Computes the spectrum over logarithmic frequencies and the levels that an episode reads from
// sound.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tarnwick {

// Values rise quickly (10 ms) and fall slowly (0.25 s) by elapsed time, independent of the rate of
// calls. One thread at a time.
class AudioAnalyzer {
  public:
    static constexpr std::size_t window = 2048; // samples used by each call
    static constexpr double lowestFrequency = 30, highestFrequency = 16000; // Hz, of the spectrum

    // `sampleRate` in Hz, above 0; each of the `bins` must begin below half of it (above 31.2 kHz
    // for 256 bins). `bins` is at least 0.
    AudioAnalyzer(double sampleRate, std::int64_t bins);
    ~AudioAnalyzer();
    AudioAnalyzer(AudioAnalyzer&&) noexcept;
    AudioAnalyzer& operator=(AudioAnalyzer&&) noexcept;

    // Analyses the last `window` samples, preceded by silence if there are fewer, and moves the
    // values towards the result by `elapsed` seconds, at least 0.
    void analyse(std::span<const float> mono, double elapsed);
    // Sets all values to silence at once, for sound that restarts or jumps.
    void reset();

    double sampleRate() const { return sampleRate_; }
    // Each in [0, 1]: 0 is -70 decibels, 1 is -6. 0 decibels is a sine of full scale.
    const std::vector<float>& spectrum() const { return spectrum_; }
    const std::array<float, 4>& bands() const { return bands_; } // low, mid, high, level; [0, 1]

    // The means of left and right samples. An odd sample at the end is ignored.
    static std::vector<float> mono(std::span<const float> interleaved);

  private:
    struct Transform;
    // Indices of frequencies of the transform, [first, end), in steps of rate / window.
    struct Range {
        std::size_t first = 0, end = 0;
    };
    Range binRange(std::size_t bin, std::size_t bins) const;
    Range bandRange(double from, double to) const;
    float peak(const Range& range) const;
    float sum(const Range& range) const;

    double sampleRate_;
    std::vector<float> spectrum_;
    std::array<float, 4> bands_{};
    std::vector<Range> binRanges_;
    std::array<Range, 3> bandRanges_;
    std::unique_ptr<Transform> transform_;
};

} // namespace tarnwick
