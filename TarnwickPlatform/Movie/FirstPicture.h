// The first picture of a movie file, small.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace tarnwick {

// Scaled so that the longer side has at most `longestSide` pixels; opaque. Absent if the file
// cannot be read as a movie. Blocks.
std::optional<Picture> firstPictureOf(const std::filesystem::path& movie,
                                      std::uint32_t longestSide);

} // namespace tarnwick
