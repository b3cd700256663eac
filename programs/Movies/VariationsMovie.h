// The movie of an episode's variations.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Movies/VideoChapters.h"
#include "programs/Episode/EpisodeVariations.h"
#include "programs/Movies/ExportOptions.h"

namespace tarnwick {

// Writes `movie` with one segment per variation, from its start and with its values; with sound and
// watermark as the options say. Returns the chapters of the movie. Throws CommandError.
VideoChapters exportVariations(const EpisodeVariations& variations, const Arguments& arguments,
                               const MovieTarget& movie);

} // namespace tarnwick
