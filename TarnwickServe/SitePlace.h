// The episode, or the folder of episodes, that a site shows.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Files are read only if they are in the folder, also after their links are followed.
struct SitePlace {
    std::filesystem::path folder; // absolute, without links
    std::string only;             // the file name of the one episode; empty: all in the folder

    static constexpr std::size_t mostEpisodes = 500;

    // Throws ServeError if `path` is neither a file that ends with .metal nor a folder.
    static SitePlace of(const std::filesystem::path& path);

    // File names, ascending. Of a folder: the first mostEpisodes that end with .metal and are not
    // hidden; other folders in it are not searched. Blocks.
    std::vector<std::string> episodeNames() const;

    struct Read {
        std::string bytes;
        std::string failure; // one sentence if the file cannot be read, else empty
    };
    // The content of a regular file of the folder. Blocks, but does not wait for pipes or devices.
    Read read(std::string_view name, std::size_t mostBytes) const;
};

} // namespace tarnwick
