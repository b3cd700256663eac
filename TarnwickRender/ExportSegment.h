// What a movie is made of: stretches of programs' time, one after another.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/ValuesAt.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// Where the program's picture lies in the frame, and what is laid over both.
struct FrameLayout {
    struct Area {
        std::int64_t x = 0, y = 0, width = 0, height = 0; // pixels from the frame's upper left

        bool operator==(const Area&) const = default;
    };
    Area picture;                 // lies within the frame, and is the program's whole resolution
    gpu::ClearColor background{}; // of the frame
    // Pictures that cover the whole frame, alpha premultiplied, drawn after the program's. Shared,
    // because the segments of a movie take theirs from one list.
    std::vector<std::shared_ptr<const gpu::Texture>> overlays{};
    std::int64_t overlayIndex = 0; // the one that is shown; none need be there to show none
    // For each frame's time in seconds of the program: the one that is shown instead, none where it
    // is not in the list. So a page can turn while the program plays on.
    std::function<std::int64_t(double time)> overlayIndexAt{};
};

struct ExportSegment {
    std::shared_ptr<const ShaderProgram> program; // draws into ShaderProgram::pixelFormat
    ParamValues values{};                         // where there is no valuesAt
    double start = 0;                             // seconds of the program, of the first frame
    double duration = 0;                          // seconds; one frame at least
    bool watermark = false;
    bool sound = false; // contributes its sound, if it has one; else silence
    std::optional<FrameLayout> layout{};
    std::shared_ptr<const ShaderProgram> soundProgram{}; // null: `program`
    std::optional<ParamValues> soundValues{};            // absent: `values`
    std::optional<double> soundStart{};                  // seconds; absent: `start`

    // Seconds at the end, half of the duration at most, that are crossfaded into the frames that
    // lie before the beginning, so that the last frame leads on to the first; 0 or less for none.
    // Those frames have times before `start`, which may be below 0; a simulation stands still
    // there.
    double loop = 0;
    // Crossfades the sound of those seconds in the same way, so that the last sample leads on to
    // the first. Without it the samples stay as they are, and the joint may click.
    bool loopSound = false;
    // The values at a time in seconds, in place of `values`: each frame's at its time, and each
    // step of a simulation's at that of the step, so that the frames' rate changes no particle.
    ValuesAt valuesAt{};
    // What an episode that takes Inputs meets at a time in seconds; absent: silence and black.
    // Asked once a frame, in their order. Where it gives no previous frame, that is the segment's
    // own.
    std::function<ShaderInputs(double time)> inputsAt{};
};

} // namespace tarnwick
