// The episodes and folders in a folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

struct FolderEntry {
    std::filesystem::path path;
    std::filesystem::file_time_type changed{};
    bool isFolder = false;

    bool operator==(const FolderEntry&) const = default;
};

struct FolderListing {
    static constexpr std::size_t most = 5000; // entries; the others are left out

    std::filesystem::path folder;
    std::vector<FolderEntry> entries; // folders, and files that end with .metal; no hidden ones
    std::string failure;              // one sentence if the folder cannot be read; empty otherwise

    // Blocks.
    static FolderListing of(const std::filesystem::path& folder);
};

// The files of a list that still exist, in its order. Blocks.
std::vector<FolderEntry> existing(const std::vector<std::filesystem::path>& files);

enum class FolderOrder : std::uint8_t { name, newest };

// Folders first. Numbers in names are compared as numbers: "2" is before "10".
// `filter`: words, each of which the name has in any case; empty: all entries.
std::vector<FolderEntry> arranged(std::vector<FolderEntry> entries, FolderOrder order,
                                  std::string_view filter);

// The folder of the episodes that come with the program. Empty without such a folder. Blocks.
std::filesystem::path shippedEpisodes();

} // namespace tarnwick::player
