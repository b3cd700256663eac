// A folder of files that appears complete or not at all.
#pragma once

#include <filesystem>
#include <span>
#include <string>

namespace tarnwick {

struct NewFile {
    std::filesystem::path path; // within the folder
    std::string text;
};

// Throws CommandError if something other than an empty folder exists at `folder`, or if it cannot
// be created. Call it before long work.
void checkNewFolder(const std::filesystem::path& folder);

// Writes the files into a temporary folder beside `folder`, then renames it. Replaces an empty
// folder. Throws CommandError, and leaves nothing behind, if something else is there or a file
// cannot be written. Blocks, and delays Ctrl-C.
void writeNewFolder(const std::filesystem::path& folder, std::span<const NewFile> files);

} // namespace tarnwick
