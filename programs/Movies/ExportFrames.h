// Parts of a movie, as the command line names them.
#pragma once

#include "TarnwickRender/VideoExporter.h"

#include <string_view>

namespace tarnwick {

// The frames that `given`, "A..B", names of a movie of `duration` seconds: from A on, up to B. Both
// are where a stretch begins; B may be the movie's end, and is where it is left out. Throws
// CommandError.
FrameRange exportFramesOf(std::string_view given, const ExportPreset& preset, double duration);

} // namespace tarnwick
