// The movie of a walkthrough.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "programs/Episode/EpisodeWalkthrough.h"

namespace tarnwick {

// Writes the pages, one after another, to the file of -o: for each stage a segment, whose program
// runs while its pages change, and a chapter. Time continues from stage to stage, so each stage
// begins with the moment at which the last one ended, with the episode's sound throughout. The
// options say the format, the seconds of a page, sound and watermark. Throws CommandError.
void exportWalkthrough(const EpisodeWalkthrough& walkthrough, const Arguments& arguments);

} // namespace tarnwick
