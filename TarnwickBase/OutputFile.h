// Checks of output files: a program never overwrites its inputs or a file of another kind.
#pragma once

#include "TarnwickBase/FileKind.h"

#include <filesystem>
#include <span>
#include <stdexcept>
#include <string_view>

namespace tarnwick {

// The user's name for an output cannot be used; what() is one sentence.
struct OutputNameError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Throws OutputNameError unless the name ends as the kind's do. `writer` is the sentence's subject:
// "-o", "The preset site".
void checkOutputEnding(const std::filesystem::path& file, FileKind kind, std::string_view writer);

// Throws OutputNameError where `file` is one of `inputs` under whatever name (links are followed;
// words that name no file count for nothing), or where something stands there that may not be
// replaced: a folder, a device, a file that is not empty and not of that kind, anything by a kind
// that replaces nothing. Throws WholeFileError where it cannot be written as things stand. To be
// asked before long work, and again behind it. Blocks.
void checkOutputFile(const std::filesystem::path& file, FileKind kind,
                     std::span<const std::string_view> inputs);

} // namespace tarnwick
