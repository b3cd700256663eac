#include "TarnwickRender/AudioRenderer.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickRender/Sound/SoundSamples.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace tarnwick {
namespace {

constexpr int rate = ShaderAssembler::sampleRate;
constexpr std::int64_t samplesPerJob = rate; // one second
static_assert(samplesPerJob <= SoundCheck::mostSamples);

std::int64_t sampleCount(double duration) {
    const double nearest = std::round(duration * rate);
    precondition(std::abs(nearest) < 9e18, "the samples of a sound can be counted", "duration",
                 duration);
    return static_cast<std::int64_t>(nearest);
}

constexpr std::uint32_t channels = 2, bytesPerNumber = 2;
constexpr std::uint32_t headerAfterSize = 36; // bytes of the header after its size

std::int16_t pcm(float sample) {
    constexpr float most = std::numeric_limits<std::int16_t>::max();
    if (std::isnan(sample))
        return 0;
    return static_cast<std::int16_t>(std::round(std::clamp(sample, -1.0f, 1.0f) * most));
}

// Little-endian, as all of RIFF.
class WavWriter {
  public:
    explicit WavWriter(std::size_t length) { bytes_.reserve(length); }
    void name(std::string_view four) { bytes_.insert(bytes_.end(), four.begin(), four.end()); }
    void number16(std::uint32_t number) {
        bytes_.push_back(static_cast<std::uint8_t>(number));
        bytes_.push_back(static_cast<std::uint8_t>(number >> 8));
    }
    void number32(std::uint32_t number) {
        number16(number);
        number16(number >> 16);
    }
    std::vector<std::uint8_t> bytes() && { return std::move(bytes_); }

  private:
    std::vector<std::uint8_t> bytes_;
};

} // namespace

std::optional<std::vector<float>>
AudioRenderer::render(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                      double start, double duration, const ParamValues& values, SoundNews* news) {
    const auto queue = program->hasSound() ? device.newCommandQueue() : nullptr;
    if (!queue)
        return std::nullopt;
    const std::int64_t total = sampleCount(duration);
    const auto buffer = device.newBuffer(samplesPerJob * soundSampleSize);
    if (!buffer)
        return std::nullopt;
    std::vector<float> samples;
    for (std::int64_t offset = 0; offset < total; offset += samplesPerJob) {
        const auto count = static_cast<std::uint32_t>(std::min(total - offset, samplesPerJob));
        // Computed from the whole offset, so that errors do not add up.
        const double from = start + static_cast<double>(offset) / rate;
        if (news != nullptr && news->check != nullptr)
            news->notFinite = news->check->firstNotFinite(from, count, values);
        if (news != nullptr && news->notFinite)
            return std::nullopt;
        const SoundResult result =
            evaluateSound(*program->parts(), *queue, *buffer, from, count, values);
        if (result == SoundResult::failed)
            return std::nullopt;
        const auto found = soundSamples(*buffer, count);
        samples.insert(samples.end(), found.begin(), found.end());
        if (news != nullptr)
            news->hitLoopBudget |= result == SoundResult::endedByLoopBudget;
        if (news != nullptr && news->advanced)
            news->advanced(offset + count, total);
    }
    return samples;
}

std::vector<std::uint8_t> AudioRenderer::wavData(std::span<const float> samples) {
    const std::size_t length = samples.size() * bytesPerNumber;
    precondition(length <= std::numeric_limits<std::uint32_t>::max() - headerAfterSize,
                 "the size of a WAV file fits into 32 bits", "bytes", length);
    WavWriter wav(length + headerAfterSize + 8);
    wav.name("RIFF");
    wav.number32(static_cast<std::uint32_t>(length) + headerAfterSize);
    wav.name("WAVEfmt ");
    wav.number32(16); // bytes up to the data's name
    wav.number16(1);  // integer PCM
    wav.number16(channels);
    wav.number32(rate);
    wav.number32(rate * channels * bytesPerNumber);
    wav.number16(channels * bytesPerNumber);
    wav.number16(8 * bytesPerNumber);
    wav.name("data");
    wav.number32(static_cast<std::uint32_t>(length));
    for (const float sample : samples)
        wav.number16(static_cast<std::uint16_t>(pcm(sample)));
    return std::move(wav).bytes();
}

} // namespace tarnwick
