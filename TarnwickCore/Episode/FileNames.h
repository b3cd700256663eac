// Names for new episode files.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace tarnwick {

struct FileNames {
    // A safe file name made of the last path component of `name` without its extension. Letters,
    // marks, digits, hyphens, underscores, spaces and full stops are kept; every other character
    // becomes a hyphen. At most 80 characters, then ".metal". Never a hidden file; "shader.metal"
    // if no character remains.
    static std::string safe(std::string_view name);

    // The path of a new file in `directory`: `name`, or `name` with " 2", " 3" and so on before its
    // extension (default: "metal"), the first for which `exists` returns false.
    static std::filesystem::path
    unique(std::string_view name, const std::filesystem::path& directory,
           const std::function<bool(const std::filesystem::path&)>& exists);
};

} // namespace tarnwick
