// One frame of a performance as a picture.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/Performing/PerformedFrames.h"
#include "TarnwickRender/Stills.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick {

// The frame at `seconds` of the performance, which is fitted to the program's parameters.
// `news.warmed` counts frames of 1/60 s. `inputs`: as in PerformedFrames. Absent for a size below 1 by 1 or above the device's,
// without memory, and if the device is lost. Blocks.
std::optional<Picture> performedStill(const std::shared_ptr<const ShaderProgram>& program,
                                      gpu::Device& device, std::int64_t width, std::int64_t height,
                                      std::shared_ptr<const Performance> performance,
                                      double seconds, StillNews* news = nullptr,
                                      std::shared_ptr<FrameInputs> inputs = nullptr);

} // namespace tarnwick
