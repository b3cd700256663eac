// Movies that commands write.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickRender/SoundTap.h"
#include "TarnwickRender/VideoExporter.h"
#include "programs/Movies/ExportOptions.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace tarnwick {

// Draws the segment with the values that the settings give at each time; its sound has the base
// values.
void letFollow(ExportSegment& segment, const Settings& settings);

// Lets the segment's picture react to what `tap`, which outlives it, hears at each frame: the sound
// of the movie, which has the segment's values throughout and none of its keys'. `tap` may be null.
void letListen(ExportSegment& segment, SoundTap* tap);

// Exports the segments to where the target says, and says behind it what was made: frames, length,
// size, time taken. How far it is stands on standard error; Ctrl-C
// cancels it. `path` is what to name the episode by, `details` what else is wanted of the exporter.
// Throws CommandError.
void exportMovie(std::span<const ExportSegment> segments, const MovieTarget& target,
                 gpu::Device& device, std::string_view path, ExportDetails details = {});
// The same as `file`, of which a part may remain where it fails; gives the number of its frames.
std::int64_t exportMovieFile(std::span<const ExportSegment> segments, const ExportPreset& preset,
                             gpu::Device& device, const std::filesystem::path& file,
                             std::string_view path, ExportDetails details = {});

} // namespace tarnwick
