// One frame of a timeline as a picture.
#pragma once

#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/Stills.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick {

struct TimelineStillDetails {
    std::uint32_t frame = 0; // u.frame; a performance has its own
    // Null: silence and black; with a performance, the program's own sound and black.
    std::shared_ptr<FrameInputs> inputs{};
    StillNews* news = nullptr; // counts frames of 1/60 s of a performance
};

// The frame at `time` of the timeline, which is fitted to the program's parameters. `program` draws
// into ShaderProgram::pixelFormat. The frame of settings has no previous one and hears the two
// seconds before it. Absent for a size below 1 by 1 or above the device's, without memory, and if
// the device is lost. Blocks. Throws InputError.
std::optional<Picture> timelineStill(const std::shared_ptr<const ShaderProgram>& program,
                                     gpu::Device& device, std::int64_t width, std::int64_t height,
                                     const Timeline& timeline, double time,
                                     const TimelineStillDetails& details = {});

} // namespace tarnwick
