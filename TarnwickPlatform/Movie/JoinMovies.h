// Joins the parts of a movie, which may have been written on several machines.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <filesystem>
#include <span>

namespace tarnwick {

// Writes the movie of `parts`, in their order, to `output`, without encoding again: its bytes equal
// those of the movie written as a whole. Sound and chapters are those of the first part. Throws
// MovieError and leaves no complete file. The kind is `parts` if a part cannot be read or is the
// output, if parts differ in codec, size, rate or the encoder's parameters, if one does not begin
// where the one before ended, or if the first does not begin at frame 0. Blocks. Any thread.
void joinMovies(std::span<const std::filesystem::path> parts, const std::filesystem::path& output,
                MovieFileType type);

} // namespace tarnwick
