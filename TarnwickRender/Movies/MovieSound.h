// Writes the sound of a movie: a task beside its pictures.
#pragma once

#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickRender/Movies/ExportState.h"
#include "TarnwickRender/Movies/ExportTimeline.h"

#include <chrono>

namespace tarnwick {

// Whether the segment makes any sound.
bool isHeard(const ExportSegment& segment);

// What the movie's sound asks of the writer.
AudioSettings soundSettings(const ExportTimeline& timeline);

// Renders the sound of every segment that is heard, silence for the others, and appends it frame by
// frame, a loop's with the samples that soundSettings() adds; marks the input as finished. Ends
// early where the state has failed, and makes it fail where the sound cannot be rendered or
// appended. fps divides the sample rate. Blocks.
void writeSound(const ExportTimeline& timeline, gpu::Device& device, AudioInput& input,
                const MovieWriter& writer, ExportState& state, std::chrono::nanoseconds patience);

} // namespace tarnwick
