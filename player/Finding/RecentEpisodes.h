// The files that were opened last, kept in the user's state folder.
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

namespace tarnwick::player {

// One thread at a time. A list that cannot be read is empty; one that cannot be written is kept in
// memory only.
class RecentEpisodes {
  public:
    static constexpr std::size_t most = 24;

    // `file` is JSON: {"files": ["/home/me/a.metal"]}. Blocks.
    explicit RecentEpisodes(std::filesystem::path file);

    // The newest first, also files that were removed since.
    const std::vector<std::filesystem::path>& files() const { return files_; }
    // Puts a file at the front. Reads the list again before, for other players add to it too.
    // Blocks.
    void add(const std::filesystem::path& file);
    void remove(const std::filesystem::path& file);

  private:
    void read();
    void write() const;

    std::filesystem::path file_;
    std::vector<std::filesystem::path> files_;
};

// The file in the user's state folder.
std::filesystem::path recentEpisodesFile();

} // namespace tarnwick::player
