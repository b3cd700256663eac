// One frame of an episode as a picture.
#pragma once

#include "TarnwickPlatform/Pictures/PNG.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/Stills.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace tarnwick {

// Has no state and a queue of its own, so it may work beside live playback.
struct StillRenderer {
    // The picture at `time` seconds with the frame number `frame`, the pointer in the middle and,
    // by default, silence and no previous frame; `program` draws into ShaderProgram::pixelFormat.
    // Nothing on any failure: a size below 1 by 1 or beyond the device, no memory, a lost device. A
    // particle episode is played from its start, as a run that shows every frame would: its steps
    // take `values`, or those that `valuesAt` gives at each step's time. Blocks.
    static std::optional<Picture> render(const std::shared_ptr<const ShaderProgram>& program,
                                         gpu::Device& device, std::int64_t width,
                                         std::int64_t height, float time, std::uint32_t frame,
                                         const ParamValues& values, StillNews* news = nullptr,
                                         const ValuesAt& valuesAt = {},
                                         const ShaderInputs& inputs = ShaderInputs::none());

    // Throws PictureError; then no file was changed. Blocks.
    static void writePNG(const Picture& picture, const std::filesystem::path& file) {
        tarnwick::writePNG(picture, file);
    }
};

} // namespace tarnwick
