// Files that take nobody's place.
#pragma once

#include <filesystem>
#include <string_view>

namespace tarnwick {

// Writes a file where there is none, not even a link; false where one is. Where it cannot be
// written nothing of it stays. Throws CommandError. Blocks.
bool writeNewFile(const std::filesystem::path& path, std::string_view text);

} // namespace tarnwick
