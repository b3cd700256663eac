// An episode's sound as samples, and samples as a sound file.
#pragma once

#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/SoundCheck.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick {

// What becomes known while a sound is rendered, besides its samples.
struct SoundNews {
    // After each second of it: samples that are there, and in all.
    std::function<void(std::int64_t done, std::int64_t total)> advanced{};
    bool hitLoopBudget = false; // a loop of the episode was ended
    // Looks at each second before it is rendered, where there is one; what it finds ends the
    // rendering.
    SoundCheck* check = nullptr;
    std::optional<double> notFinite{}; // the time of what it found, in seconds
};

struct AudioRenderer {
    // Interleaved stereo, left first, sampleRate samples a second from `start` on, each in [-1, 1].
    // The number of samples is the nearest to `duration`, which is finite; none below half of one.
    // Nothing where the program has no sound, the device fails, or a check finds what is no number.
    // Blocks.
    static std::optional<std::vector<float>>
    render(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device, double start,
           double duration, const ParamValues& values, SoundNews* news = nullptr);

    // Seconds that a file holds at most: its sizes are 32 bits wide.
    static constexpr double longestWav = 22369;

    // Interleaved stereo as a RIFF file of 16-bit PCM at sampleRate. Samples beyond [-1, 1] are
    // clipped; what is no number is silent. At most longestWav seconds.
    static std::vector<std::uint8_t> wavData(std::span<const float> samples);
};

} // namespace tarnwick
