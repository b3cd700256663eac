// The record of a frame that every GPU stage of an episode reads.
#pragma once

#include "TarnwickCore/ShaderAssembler.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tarnwick {

// The time of a frame or of a simulation's step.
struct FrameMoment {
    using Mouse = std::optional<std::array<float, 2>>; // pixels; absent: the middle of the picture

    float time = 0;      // seconds of the episode
    float timeDelta = 0; // seconds since the frame before
    std::uint32_t frame = 0;
    Mouse mouse{};
};

// The record for a picture of `width` by `height` pixels.
inline TWUniforms frameUniforms(const FrameMoment& moment, std::int64_t width,
                                std::int64_t height) {
    const std::array size{static_cast<float>(width), static_cast<float>(height)};
    return {.resolution = size,
            .time = moment.time,
            .timeDelta = moment.timeDelta,
            .mouse = moment.mouse.value_or(std::array{size[0] * 0.5f, size[1] * 0.5f}),
            .frame = moment.frame};
}

} // namespace tarnwick
