// Files that replace no other file.
#pragma once

#include <filesystem>
#include <string_view>

namespace tarnwick {

// Writes a new file. Returns false if the path exists, even as a link. If writing fails, the file
// is removed. Throws CommandError. Blocks.
bool writeNewFile(const std::filesystem::path& path, std::string_view text);

} // namespace tarnwick
