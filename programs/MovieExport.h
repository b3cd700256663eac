// Movies that commands write.
#pragma once

#include "TarnwickRender/SoundTap.h"
#include "TarnwickRender/VideoExporter.h"

#include <span>
#include <string_view>

namespace tarnwick {

// Lets the segment's picture react to what `tap`, which outlives it, hears at each frame with the
// segment's values; `tap` may be null.
void letListen(ExportSegment& segment, SoundTap* tap);

// Exports the segments as `out`, which gets its name once it is complete: an older movie of that
// name survives whatever fails. How far it is stands on standard error; Ctrl-C cancels it. `path`
// is what to name the episode by, `details` what else is wanted of the exporter. Throws
// CommandError.
void exportMovie(std::span<const ExportSegment> segments, const ExportPreset& preset,
                 gpu::Device& device, std::string_view out, std::string_view path,
                 ExportDetails details = {});

} // namespace tarnwick
