// Writes the sound of a movie, as a task beside its pictures.
#pragma once

#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickRender/Movies/ExportState.h"
#include "TarnwickRender/Movies/ExportTimeline.h"

#include <chrono>
#include <memory>

namespace tarnwick {

// Whether the segment has sound.
bool isHeard(const ExportSegment& segment);

// The writer's settings for the movie's sound.
AudioSettings soundSettings(const ExportTimeline& timeline);

// Renders the sound of each segment, silence for those without, appends it frame by frame and marks
// the input as finished. A loop also has the samples that soundSettings() adds at both ends. Ends
// early if `state` has an error, and sets one if the sound cannot be rendered or appended. If the
// device is lost it goes on with the next ground of `state`. fps divides the sample rate. Blocks.
void writeSound(std::shared_ptr<const ExportGround> ground, AudioInput& input,
                const MovieWriter& writer, ExportState& state, std::chrono::nanoseconds patience);

} // namespace tarnwick
