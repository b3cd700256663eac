#include "TarnwickCore/Live/AudioAnalyzer.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <kiss_fftr.h>
#include <numbers>

namespace tarnwick {
namespace {

constexpr std::size_t window = AudioAnalyzer::window;
constexpr std::size_t outputs = window / 2; // used frequencies of the transform
// Hz; low, mid and high are between neighbours.
constexpr std::array<double, 4> bandEdges{20, 250, 2000, 12000};

// The periodic form of the Hann window: 0 at the first point, and at the point after the last.
std::vector<float> hannWindow() {
    std::vector<float> hann(window);
    for (std::size_t n = 0; n < window; ++n)
        hann[n] = static_cast<float>(
            0.5 * (1 - std::cos(2 * std::numbers::pi * static_cast<double>(n) / window)));
    return hann;
}

// The decibels of an amplitude, mapped to [0, 1]. Silence and NaN give 0.
float decibels(float amplitude) {
    return amplitude > 0 ? std::clamp((20 * std::log10(amplitude) + 70) / 64, 0.0f, 1.0f) : 0;
}

float rootMeanSquare(std::span<const float> samples) {
    double squares = 0;
    for (const double sample : samples)
        squares += sample * sample;
    return samples.empty()
               ? 0
               : static_cast<float>(std::sqrt(squares / static_cast<double>(samples.size())));
}

// The fraction of the way to a target after `elapsed` seconds.
struct Smoothing {
    float attack, release;
    explicit Smoothing(double elapsed)
        : attack(static_cast<float>(1 - std::exp(-elapsed / 0.01))),
          release(static_cast<float>(1 - std::exp(-elapsed * 4))) {}
    void move(float& value, float target) const {
        value += (target - value) * (value < target ? attack : release);
    }
};

} // namespace

struct AudioAnalyzer::Transform {
    std::unique_ptr<kiss_fftr_state, void (*)(void*)> setup{
        kiss_fftr_alloc(window, 0, nullptr, nullptr), [](void* state) { kiss_fftr_free(state); }};
    std::vector<float> hann = hannWindow();
    std::array<float, window> frame{};
    std::array<kiss_fft_cpx, outputs + 1> found{};
    std::array<float, outputs> magnitudes{}; // 1 for a sine of full scale

    Transform() { precondition(setup != nullptr, "KISS FFT supports this length of transform"); }
    void perform(std::span<const float> samples);
};

void AudioAnalyzer::Transform::perform(std::span<const float> samples) {
    const std::size_t silent = window - samples.size();
    std::fill_n(frame.begin(), silent, 0.0f);
    std::transform(samples.begin(), samples.end(),
                   hann.begin() + static_cast<std::ptrdiff_t>(silent),
                   frame.begin() + static_cast<std::ptrdiff_t>(silent), std::multiplies());
    kiss_fftr(setup.get(), frame.data(), found.data());
    // The window halves the amplitude, and half of it is in the negative frequencies.
    for (std::size_t k = 0; k < outputs; ++k)
        magnitudes[k] =
            std::sqrt(found[k].r * found[k].r + found[k].i * found[k].i) * (4.0f / window);
}

AudioAnalyzer::AudioAnalyzer(double sampleRate, std::int64_t bins)
    : sampleRate_(sampleRate), transform_(std::make_unique<Transform>()) {
    precondition(sampleRate > 0 && std::isfinite(sampleRate),
                 "a sample rate is positive and finite", "rate", sampleRate);
    precondition(bins >= 0, "a spectrum has at least 0 bins", "bins", bins);
    const auto count = static_cast<std::size_t>(bins);
    spectrum_.resize(count);
    for (std::size_t bin = 0; bin < count; ++bin)
        binRanges_.push_back(binRange(bin, count));
    for (std::size_t band = 0; band < bandRanges_.size(); ++band)
        bandRanges_[band] = bandRange(bandEdges[band], bandEdges[band + 1]);
}

AudioAnalyzer::~AudioAnalyzer() = default;
AudioAnalyzer::AudioAnalyzer(AudioAnalyzer&&) noexcept = default;
AudioAnalyzer& AudioAnalyzer::operator=(AudioAnalyzer&&) noexcept = default;

// At least one output for each bin, never the constant term.
AudioAnalyzer::Range AudioAnalyzer::binRange(std::size_t bin, std::size_t bins) const {
    const double span = std::log(highestFrequency / lowestFrequency),
                 start = std::log(lowestFrequency);
    auto output = [&](std::size_t edge) {
        const double hertz =
            std::exp(static_cast<double>(edge) * span / static_cast<double>(bins) + start);
        // All frequencies beyond the outputs are equivalent.
        return static_cast<std::size_t>(std::min(hertz * window / sampleRate_, outputs + 1.0));
    };
    const std::size_t first = std::max<std::size_t>(output(bin), 1);
    return {first, std::min(std::max(first + 1, output(bin + 1)), outputs)};
}

AudioAnalyzer::Range AudioAnalyzer::bandRange(double from, double to) const {
    auto firstFrom = [&](double hertz) {
        std::size_t k = 1;
        while (k < outputs && sampleRate_ * static_cast<double>(k) / window < hertz)
            ++k;
        return k;
    };
    return {firstFrom(from), firstFrom(to)};
}

float AudioAnalyzer::peak(const Range& range) const {
    precondition(range.first <= outputs, "a bin begins below half the sample rate", "first output",
                 range.first, "outputs", outputs);
    float greatest = 0;
    for (std::size_t k = range.first; k < range.end; ++k)
        greatest = std::max(greatest, transform_->magnitudes[k]);
    return greatest;
}

// The amplitude of the sum of the powers.
float AudioAnalyzer::sum(const Range& range) const {
    double squares = 0;
    for (std::size_t k = range.first; k < range.end; ++k)
        squares += static_cast<double>(transform_->magnitudes[k]) * transform_->magnitudes[k];
    return static_cast<float>(std::sqrt(squares));
}

void AudioAnalyzer::analyse(std::span<const float> mono, double elapsed) {
    mono = mono.last(std::min(mono.size(), window));
    transform_->perform(mono);
    const Smoothing smoothing(elapsed);
    for (std::size_t bin = 0; bin < spectrum_.size(); ++bin)
        smoothing.move(spectrum_[bin], decibels(peak(binRanges_[bin])));
    for (std::size_t band = 0; band < bandRanges_.size(); ++band)
        smoothing.move(bands_[band], decibels(sum(bandRanges_[band])));
    smoothing.move(bands_.back(), decibels(rootMeanSquare(mono) * 1.414f));
}

void AudioAnalyzer::reset() {
    std::ranges::fill(spectrum_, 0.0f);
    bands_.fill(0);
}

std::vector<float> AudioAnalyzer::mono(std::span<const float> interleaved) {
    std::vector<float> means(interleaved.size() / 2);
    for (std::size_t pair = 0; pair < means.size(); ++pair)
        means[pair] = (interleaved[2 * pair] + interleaved[2 * pair + 1]) * 0.5f;
    return means;
}

} // namespace tarnwick
