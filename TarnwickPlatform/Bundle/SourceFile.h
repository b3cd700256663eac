// Reads the source of an episode from a file.
#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tarnwick {

// A source cannot be read. what() is one sentence that names the file.
struct SourceFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline constexpr std::size_t longestSource = std::size_t{8} << 20; // bytes

// All bytes of `file`, a regular file or a pipe, also its byte order mark and bytes that are not
// UTF-8. Throws SourceFileError if the file is missing, a folder or longer than longestSource.
// Blocks.
std::string bytesOfSource(const std::filesystem::path& file);

} // namespace tarnwick
