// Finds the length at which a clip of an episode comes back closest to where it began.
#pragma once

#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/ValuesAt.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// A length to loop at.
struct FoundLoop {
    double length = 0;     // seconds, a whole number of frames
    double difference = 0; // between the ends, root mean square, of the values 0 to 255

    bool operator==(const FoundLoop&) const = default;
};

struct LoopFinder {
    // Told of the lengths tried and to be tried; false ends the search, without an answer.
    using Progress = std::function<bool(std::int64_t done, std::int64_t total)>;

    // Compares the two frames at `start` with those at each whole number of frames within `range`
    // of `around` (all in seconds, the frames `fps` a second), two frames at least, as small
    // stills: of equal lengths the shortest. Nothing for an episode that keeps state or is a grid,
    // for times that are not finite, for fps below 1, and where the device fails. Blocks.
    static std::optional<double> bestLength(const std::shared_ptr<const ShaderProgram>& program,
                                            gpu::Device& device, const ParamValues& values,
                                            double start, double around, double range,
                                            std::int64_t fps, const Progress& progress = {});
    // The same, with how well it loops, and with values that change over time: each still has those
    // of its own time. Without `valuesAt` all have their defaults.
    static std::optional<FoundLoop> best(const std::shared_ptr<const ShaderProgram>& program,
                                         gpu::Device& device, const ValuesAt& valuesAt,
                                         double start, double around, double range,
                                         std::int64_t fps, const Progress& progress = {});

    static constexpr std::int64_t stillWidth = 96, stillHeight = 54; // pixels
};

} // namespace tarnwick
