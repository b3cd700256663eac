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

// Options and further results of rendering a sound.
struct SoundNews {
    // Called after each second of the sound, with the rendered samples and their total.
    std::function<void(std::int64_t done, std::int64_t total)> advanced{};
    bool hitLoopBudget = false; // result: a loop of the episode was ended
    // Checks each second before it is rendered, unless null. A value that is NaN or infinite ends
    // the rendering.
    SoundCheck* check = nullptr;
    std::optional<double> notFinite{}; // result: the time of that value, in seconds
};

struct AudioRenderer {
    // Interleaved stereo, left first, sampleRate samples a second from `start` on, each in [-1, 1].
    // `duration` is finite and is rounded to whole samples. Absent if the program has no sound, the
    // device fails, or the check finds a value that is not finite. Blocks.
    static std::optional<std::vector<float>>
    render(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device, double start,
           double duration, const ParamValues& values, SoundNews* news = nullptr);

    // The maximum number of seconds in a file: its sizes are 32 bits wide.
    static constexpr double longestWav = 22369;

    // Interleaved stereo as a RIFF file of 16-bit PCM at sampleRate. Samples outside [-1, 1] are
    // clipped; NaN becomes silence. At most longestWav seconds.
    static std::vector<std::uint8_t> wavData(std::span<const float> samples);
};

} // namespace tarnwick
