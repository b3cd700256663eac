// The files of the inputs that a performance names.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// All functions block for the files.

// The input that is the file now, with its whole path; absent if the file cannot be read.
std::optional<Performance::Input> inputOfFile(const std::string& name,
                                              const std::filesystem::path& file);

// The same inputs, for a performance whose file is in `folder`: paths below it become relative, all
// others are whole. `from`: the folder of relative paths; empty if there are none.
std::vector<Performance::Input> inputsBeside(std::vector<Performance::Input> inputs,
                                             const std::filesystem::path& folder,
                                             const std::filesystem::path& from = {});

struct InputFile {
    std::string name; // of the input
    std::filesystem::path file;
    bool isPlayed = false;

    bool operator==(const InputFile&) const = default;
};

struct FoundInputs {
    std::vector<InputFile> files{};
    // About files that are missing, which `files` does not have, and files that have changed.
    std::vector<std::string> sentences{};
};

// The files of a performance whose file is in `folder`.
FoundInputs inputFilesOf(const Performance& performance, const std::filesystem::path& folder);

} // namespace tarnwick
