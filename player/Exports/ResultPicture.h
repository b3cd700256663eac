// A small picture of what an export made.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <filesystem>
#include <optional>

namespace tarnwick::player {

// The first picture of a movie, a PNG picture, or the first PNG picture of a folder, with at most
// 512 pixels a side. Absent for anything else, and if it cannot be read. Blocks.
std::optional<Picture> resultPicture(const std::filesystem::path& result);

} // namespace tarnwick::player
