// Names for new episode files.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace tarnwick {

struct FileNames {
    // A file name made of any text: of its last path component, without extension, the letters,
    // marks, digits, hyphens, underscores, spaces and full stops stay and every other character
    // becomes a hyphen; at most 80 characters, then ".metal". Never a hidden file; "shader.metal"
    // when nothing is left.
    static std::string safe(std::string_view name);

    // A place in `directory` for a new file called `name`: that name, or with " 2", " 3" and so on
    // before its extension ("metal" where it has none), the first for which `exists` answers no.
    static std::filesystem::path
    unique(std::string_view name, const std::filesystem::path& directory,
           const std::function<bool(const std::filesystem::path&)>& exists);
};

} // namespace tarnwick
