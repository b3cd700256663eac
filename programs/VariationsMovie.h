// The movie of an episode's variations.
#pragma once

#include "TarnwickCore/VideoChapters.h"
#include "programs/Arguments.h"
#include "programs/EpisodeVariations.h"

#include <string_view>

namespace tarnwick {

// Writes one segment a variation, from its start and with its values, as `out`; the options of the
// command line say in which format, and whether with sound and watermark. The chapters, which are
// the movie's own too, are given back. Throws CommandError.
VideoChapters exportVariations(const EpisodeVariations& variations, const Arguments& arguments,
                               std::string_view out);

} // namespace tarnwick
