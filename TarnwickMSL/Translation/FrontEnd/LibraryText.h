// The text of the standard library's files. The build generates the source, LibraryText.cpp.
#pragma once

#include <span>
#include <string_view>

namespace tarnwick::msl {

struct LibraryFile {
    std::string_view name; // relative to TarnwickMSL/Library: "types/vectors.h"
    std::string_view text; // zero-terminated
};

std::span<const LibraryFile> libraryFiles();

// The folder of the library's files in the compiler's in-memory file system.
inline constexpr std::string_view libraryFolder = "/metal/";

inline bool isLibraryFile(std::string_view path) {
    return path.starts_with(libraryFolder);
}

} // namespace tarnwick::msl
