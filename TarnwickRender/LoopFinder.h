// Finds the length of a clip whose last frame is most like its first.
#pragma once

#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/ShaderProgram.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

struct FoundLoop {
    double length = 0;     // seconds, a whole number of frames
    double difference = 0; // root mean square between the ends, in [0, 255]

    bool operator==(const FoundLoop&) const = default;
};

struct LoopFinder {
    // Called with the number of lengths tried and in all; false ends the search: no result.
    using Progress = std::function<bool(std::int64_t done, std::int64_t total)>;

    // Compares the two frames from `start` on with two frames at each length in [around - range,
    // around + range] (seconds; whole frames at `fps`; at least two frames), as small stills. The
    // result is the most similar, the shortest of several. Absent for an episode with state or a
    // grid, for times that are not finite, for fps below 1, and if the device fails. Blocks.
    static std::optional<double> bestLength(const std::shared_ptr<const ShaderProgram>& program,
                                            gpu::Device& device, const ParamValues& values,
                                            double start, double around, double range,
                                            std::int64_t fps, const Progress& progress = {});
    // The same with the difference, with the state of the timeline at each still's time, and with
    // the channels of `inputs` unless null. Throws InputError.
    static std::optional<FoundLoop> best(const std::shared_ptr<const ShaderProgram>& program,
                                         gpu::Device& device, const Timeline& timeline,
                                         double start, double around, double range,
                                         std::int64_t fps, const Progress& progress = {},
                                         FrameInputs* inputs = nullptr);

    static constexpr std::int64_t stillWidth = 96, stillHeight = 54; // pixels
};

} // namespace tarnwick
