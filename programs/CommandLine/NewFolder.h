// A folder of files that appears whole or not at all.
#pragma once

#include <filesystem>
#include <span>
#include <string>

namespace tarnwick {

struct NewFile {
    std::filesystem::path path; // within the folder
    std::string text;
};

// Throws CommandError where something stands at `folder`, but for an empty folder, or nothing can
// come to stand there. To be asked before long work.
void checkNewFolder(const std::filesystem::path& folder);

// Writes the files into a folder of another name beside `folder`, then renames it. Takes the place
// of an empty folder. Throws CommandError, with nothing left behind, where something else stands
// there or a file cannot be written. Blocks, and keeps Ctrl-C waiting meanwhile.
void writeNewFolder(const std::filesystem::path& folder, std::span<const NewFile> files);

} // namespace tarnwick
