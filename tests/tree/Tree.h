// The files of the source tree, for tests that look at it as a whole.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

// Folders at the root of the tree that hold the project's own files.
std::vector<std::string> topFolders();

// The lines of a file of the tree.
std::vector<std::string> linesOf(const std::filesystem::path& file);

} // namespace tarnwick
