// The segments of a movie: time ranges of programs, one after another.
#pragma once

#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/ShaderProgram.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

namespace gpu {
class Device;
}

// The place of the program's picture in the frame, and the overlays.
struct FrameLayout {
    struct Area {
        std::int64_t x = 0, y = 0, width = 0, height = 0; // pixels from the frame's upper left

        bool operator==(const Area&) const = default;
    };
    Area picture;                 // within the frame; its size is the program's resolution
    gpu::ClearColor background{}; // of the frame
    // Pictures of the whole frame, alpha premultiplied, drawn over the program's. Shared between
    // the segments of a movie.
    std::vector<std::shared_ptr<const gpu::Texture>> overlays{};
    std::int64_t overlayIndex = 0; // of the overlay to show; ignored without overlays
    // Unless empty: the index of the overlay to show at a time in seconds of the program. An index
    // outside the list shows none.
    std::function<std::int64_t(double time)> overlayIndexAt{};
};

struct ExportSegment {
    std::shared_ptr<const ShaderProgram> program; // draws into ShaderProgram::pixelFormat
    // Fitted to the program's parameters. A frame shows the state of its time, a step of a
    // simulation that of the step's time. A performance is without `loop`. Segments of one movie
    // may show parts of one timeline.
    Timeline timeline{};
    double start = 0;    // seconds of the timeline, of the first frame
    double duration = 0; // seconds; at least one frame
    bool watermark = false;
    bool sound = false; // with the sound of the program; silence if it has none
    // A media file whose sound is added. It follows the timeline's clock and repeats; empty: none.
    std::filesystem::path soundFile{};
    bool playsInputs = false; // with the sound files that a performance played
    std::optional<FrameLayout> layout{};
    std::shared_ptr<const ShaderProgram> soundProgram{}; // null: `program`
    // For the sound, unless a performance gives them. Absent: the base values of the timeline.
    std::optional<ParamValues> soundValues{};
    std::optional<double> soundStart{}; // seconds; absent: `start`

    // Seconds at the end that are crossfaded into the frames before `start`, so that the last frame
    // leads to the first. At most half of the duration; 0 or less: none. Times before `start` may
    // be below 0: a simulation then stays at step 0.
    double loop = 0;
    // Crossfades the sound of those seconds in the same way. Without it the loop may click.
    bool loopSound = false;
    // The inputs of an episode that takes Inputs. Null: silence and black; with a performance, the
    // program's own sound and black. Shared, because segments may go on with the same sound.
    std::shared_ptr<FrameInputs> inputs{};
};

// A device, and the segments of a movie on it.
struct ExportStage {
    std::shared_ptr<gpu::Device> device;
    std::vector<ExportSegment> segments;
};

} // namespace tarnwick
