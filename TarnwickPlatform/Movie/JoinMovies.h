// Puts the parts of a movie together that were written one by one, on several machines perhaps.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <filesystem>
#include <span>

namespace tarnwick {

// Writes the movie that `parts` are the stretches of, in their order, to `output`, without encoding
// again: picture packets and their times are those of the movie written in one go. Sound and
// chapters are those of the first part. Throws MovieError, and leaves no complete file: of kind
// `parts` when a part cannot be read or is the output, when parts differ in codec, size, rate or
// the encoder's parameters, when one does not begin where the one before ended or the first does
// not begin at frame 0; otherwise when the output cannot be written. Blocks; any thread.
void joinMovies(std::span<const std::filesystem::path> parts, const std::filesystem::path& output,
                MovieFileType type);

} // namespace tarnwick
