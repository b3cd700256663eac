// The frames of a part of a movie.
#pragma once

#include "TarnwickRender/VideoExporter.h"

#include <string_view>

namespace tarnwick {

// The frames from A to B - 1 for `given`, "A..B", of a movie of `duration` seconds. A and B are
// starts of stretches; B may be the end of the movie, which is its default. Throws CommandError.
FrameRange exportFramesOf(std::string_view given, const ExportPreset& preset, double duration);

} // namespace tarnwick
