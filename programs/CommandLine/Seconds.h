// The values of options in seconds.
#pragma once

#include "TarnwickCore/CommandLine/Values.h"

namespace tarnwick {

constexpr Number secondsFromZero{.unit = "seconds"};
// Lengths of movies, pages and variations.
constexpr Number secondsUpToADay{.most = 86400, .unit = "seconds", .excludesLeast = true};

} // namespace tarnwick
