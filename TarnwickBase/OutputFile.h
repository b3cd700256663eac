// Checks of output files: a program never overwrites its inputs or a file of another kind.
#pragma once

#include "TarnwickBase/FileKind.h"

#include <filesystem>
#include <span>
#include <stdexcept>
#include <string_view>

namespace tarnwick {

// The name that the user gave for an output cannot be used. what() is one sentence.
struct OutputNameError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Throws OutputNameError unless the name ends in endingOf(kind). `writer` is the subject of the
// sentence: "-o", "The preset site".
void checkOutputEnding(const std::filesystem::path& file, FileKind kind, std::string_view writer);

// Throws OutputNameError if `file` is one of `inputs` (links are followed; inputs that name no file
// are ignored), or if it exists and must not be replaced: a folder, a device, a file that is not
// empty and not of `kind`, or any file if `kind` is not replaceable. Throws WholeFileError if the
// file cannot be written. Call it before long work and again before writing. Blocks.
void checkOutputFile(const std::filesystem::path& file, FileKind kind,
                     std::span<const std::string_view> inputs);

} // namespace tarnwick
