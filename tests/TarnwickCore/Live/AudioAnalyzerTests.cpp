#include "TarnwickCore/Live/AudioAnalyzer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <random>
#include <string>

using namespace tarnwick;

namespace {

constexpr double atOnce = 1e9; // seconds: no smoothing
using Samples = std::vector<float>;

Samples made(std::size_t count, const std::function<double(std::size_t)>& sample) {
    Samples samples(count);
    for (std::size_t n = 0; n < count; ++n)
        samples[n] = static_cast<float>(sample(n));
    return samples;
}

Samples sine(double hertz, double rate, double amplitude = 1, std::size_t count = 2048) {
    return made(count, [=](std::size_t n) {
        return amplitude * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(n) / rate);
    });
}

Samples noise(std::size_t count) {
    std::mt19937 random(7);
    return made(count, [&](std::size_t) {
        return static_cast<double>(random()) / static_cast<double>(random.max()) * 2 - 1;
    });
}

// The definition in double precision, with no code in common.
struct Reference {
    std::vector<double> magnitudes = std::vector<double>(1024);
    double rate, level;

    Reference(const Samples& samples, double rate) : rate(rate) {
        const std::size_t n = std::min<std::size_t>(samples.size(), 2048);
        std::vector<double> frame(2048);
        double squares = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const double sample = samples[samples.size() - n + i];
            const auto at = 2048 - n + i;
            squares += sample * sample;
            frame[at] = sample * std::pow(std::sin(std::numbers::pi * double(at) / 2048), 2);
        }
        level = mapped(n ? std::sqrt(squares / double(n)) * 1.414 : 0);
        std::vector<std::complex<double>> turns(2048);
        for (std::size_t i = 0; i < 2048; ++i)
            turns[i] = std::polar(1.0, -2 * std::numbers::pi * double(i) / 2048);
        for (std::size_t k = 0; k < 1024; ++k) {
            std::complex<double> sum = 0;
            for (std::size_t i = 0; i < 2048; ++i)
                sum += frame[i] * turns[k * i % 2048];
            magnitudes[k] = std::abs(sum) / 512;
        }
    }
    static double mapped(double x) {
        return x > 0 ? std::clamp((20 * std::log10(x) + 70) / 64, 0.0, 1.0) : 0;
    }
    double bin(int i, int bins) const {
        auto edge = [&](int at) {
            return int(30 * std::pow(16000.0 / 30, double(at) / bins) * 2048 / rate);
        };
        const int a = std::max(edge(i), 1), b = std::min(std::max(a + 1, edge(i + 1)), 1024);
        double peak = 0;
        for (int k = a; k < b; ++k)
            peak = std::max(peak, magnitudes[std::size_t(k)]);
        return mapped(peak);
    }
    double band(double from, double to) const {
        double sum = 0;
        for (std::size_t k = 1; k < 1024; ++k)
            if (rate * double(k) / 2048 >= from && rate * double(k) / 2048 < to)
                sum += magnitudes[k] * magnitudes[k];
        return mapped(std::sqrt(sum));
    }
};

void expectAsDefined(const std::string& what, const Samples& samples, double rate) {
    SCOPED_TRACE(what + " at " + std::to_string(rate));
    const Reference reference(samples, rate);
    AudioAnalyzer analyzer(rate, 256);
    analyzer.analyse(samples, atOnce);
    for (int i = 0; i < 256; ++i)
        EXPECT_NEAR(analyzer.spectrum()[std::size_t(i)], reference.bin(i, 256), 1e-4)
            << "bin " << i;
    EXPECT_NEAR(analyzer.bands()[0], reference.band(20, 250), 1e-4);
    EXPECT_NEAR(analyzer.bands()[1], reference.band(250, 2000), 1e-4);
    EXPECT_NEAR(analyzer.bands()[2], reference.band(2000, 12000), 1e-4);
    EXPECT_NEAR(analyzer.bands()[3], reference.level, 1e-4);
}

} // namespace

TEST(AudioAnalyzer, findsWhatADirectTransformInDoublePrecisionFinds) {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        for (const double hertz : {31.0, 440.0, 1000.0, 15999.0})
            expectAsDefined("sine of " + std::to_string(hertz), sine(hertz, rate), rate);
        expectAsDefined("faint sine", sine(777, rate, 1e-3), rate);
        expectAsDefined("long sine", sine(440, rate, 0.5, 5000), rate);
        expectAsDefined("noise", noise(2048), rate);
        expectAsDefined("silence", Samples(2048), rate);
        expectAsDefined("constant", Samples(2048, 0.5f), rate);
        expectAsDefined("impulse", made(2048, [](auto n) { return n == 1500; }), rate);
        expectAsDefined("square", made(2048, [](auto n) { return n / 50 % 2 ? -1 : 1; }), rate);
        for (const std::size_t count : {0u, 1u, 63u, 2047u})
            expectAsDefined("short block", noise(count), rate);
    }
}

TEST(AudioAnalyzer, movesByElapsedTimeIndependentOfTheRateOfCalls) {
    const Samples tone = sine(300, 48000, 0.1);
    AudioAnalyzer once(48000, 64), often(48000, 64);
    once.analyse(tone, 0);
    EXPECT_EQ(once.spectrum(), Samples(64));
    for (const Samples& sound : {tone, Samples{}}) { // a rise, a fall
        once.analyse(sound, 0.04);
        for (int part = 0; part < 8; ++part)
            often.analyse(sound, 0.005);
        for (std::size_t bin = 0; bin < 64; ++bin)
            EXPECT_NEAR(once.spectrum()[bin], often.spectrum()[bin], 1e-5);
    }
    AudioAnalyzer level(48000, 0);
    level.analyse(Samples(2048, 1.0f), 0.01);
    EXPECT_NEAR(level.bands()[3], 1 - std::exp(-1), 1e-6);
    level.analyse({}, 0.25);
    EXPECT_NEAR(level.bands()[3], (1 - std::exp(-1)) * std::exp(-1), 1e-6);
    level.reset();
    EXPECT_EQ(level.bands(), (std::array<float, 4>{}));
}

// An invalid sample must not remain in the state.
TEST(AudioAnalyzer, recoversFromNaNAndInfinity) {
    AudioAnalyzer analyzer(48000, 256);
    analyzer.analyse(Samples{NAN, 1, 2}, 0.02);
    analyzer.analyse(Samples{INFINITY, 1, 2}, 0.02);
    EXPECT_TRUE(std::ranges::all_of(analyzer.spectrum(), [](float v) { return v >= 0 && v <= 1; }));
    EXPECT_TRUE(std::ranges::all_of(analyzer.bands(), [](float v) { return v >= 0 && v <= 1; }));
}

TEST(AudioAnalyzer, stopsWhereBinsBeginAboveHalfTheRate) {
    EXPECT_DEATH(AudioAnalyzer(22050, 256).analyse({}, 1), "half the sample rate");
    EXPECT_DEATH(AudioAnalyzer(48000, -1), "bins");
    AudioAnalyzer(22050, 0).analyse(noise(9), 1);
}

TEST(AudioAnalyzer, takesTheMeansOfPairs) {
    EXPECT_EQ(AudioAnalyzer::mono(Samples{1, 3, 5}), Samples{2});
    EXPECT_EQ(AudioAnalyzer::mono(Samples{1}), Samples{});
}
