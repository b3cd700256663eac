// The movie of a walkthrough.
#pragma once

#include "programs/CommandLine/Arguments.h"
#include "programs/Episode/EpisodeWalkthrough.h"

namespace tarnwick {

// Writes the pages, one after another, as -o says: a segment a stage, whose program plays on while
// its pages turn, and a chapter. Time goes on from stage to stage, so that each takes over the
// moment that the last one ended with, and the episode's sound lies under all of it. The options of
// the command line say in which format, how long a page is shown, and whether with sound and
// watermark. Throws CommandError.
void exportWalkthrough(const EpisodeWalkthrough& walkthrough, const Arguments& arguments);

constexpr Option pageSecondsOption{"--page-seconds", "S",
                                   "of the movie that each page is shown; default: 6"};
constexpr Option movieStartOption{"--start", "SECONDS",
                                  "of the episode at the movie's beginning; default: 0"};

} // namespace tarnwick
