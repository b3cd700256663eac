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

// Without state. Uses a queue of its own, beside live playback.
struct StillRenderer {
    // The picture at `time` seconds with the frame number `frame`, the pointer in the middle and no
    // previous frame. `program` draws into ShaderProgram::pixelFormat. A particle episode is played
    // from its start. Values that change over time: timelineStill(). Absent for a size below 1 by 1
    // or above the device's, without memory, and if the device is lost. Blocks.
    static std::optional<Picture> render(const std::shared_ptr<const ShaderProgram>& program,
                                         gpu::Device& device, std::int64_t width,
                                         std::int64_t height, float time, std::uint32_t frame,
                                         const ParamValues& values, StillNews* news = nullptr,
                                         const ShaderInputs& inputs = ShaderInputs::none());

    // Throws PictureError; no file is changed then. Blocks.
    static void writePNG(const Picture& picture, const std::filesystem::path& file) {
        tarnwick::writePNG(picture, file);
    }
};

} // namespace tarnwick
