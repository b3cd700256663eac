// The movie of an episode's variations.
#pragma once

#include "TarnwickCore/Movies/VideoChapters.h"
#include "programs/CommandLine/Arguments.h"
#include "programs/Episode/EpisodeVariations.h"
#include "programs/Movies/ExportOptions.h"

namespace tarnwick {

// Writes one segment a variation, from its start and with its values, as `movie`; the options of
// the command line say whether with sound and watermark. The chapters, which are the movie's own
// too, are given back. Throws CommandError.
VideoChapters exportVariations(const EpisodeVariations& variations, const Arguments& arguments,
                               const MovieTarget& movie);

} // namespace tarnwick
