// The standard library's files, as text that the build put into the program.
#pragma once

#include <span>
#include <string_view>

namespace tarnwick::msl {

struct LibraryFile {
    std::string_view name; // from the library's root: "metal_stdlib", "types/vectors.h"
    std::string_view text; // zero-terminated
};

std::span<const LibraryFile> libraryFiles();

// Where the library's files stand in the compiler's own file system.
inline constexpr std::string_view libraryFolder = "/metal/";

inline bool isLibraryFile(std::string_view path) {
    return path.starts_with(libraryFolder);
}

} // namespace tarnwick::msl
