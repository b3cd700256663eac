// Keeps thumbnails on disk.
#pragma once

#include "player/Thumbnails/Thumbnail.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace tarnwick::player {

// The folder "thumbnails" in the user's cache; empty without a cache.
std::filesystem::path thumbnailsFolder();

// The name of a picture: a digest of all that it depends on, and of the release that drew it.
std::string thumbnailName(const Episode& episode, const Settings& settings, const PixelSize& size,
                          double time);

// Files that cannot be read or written are ignored. One thread at a time.
class ThumbnailStore {
  public:
    static constexpr std::uintmax_t usualBudget = std::uintmax_t{256} << 20; // bytes

    // An empty folder: nothing is kept.
    explicit ThumbnailStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

    std::optional<Picture> find(const std::string& name) const;
    void keep(const std::string& name, const Picture& picture) const;
    // Removes the pictures that were not used for longest until the others fit.
    void prune(std::uintmax_t budget = usualBudget) const;

  private:
    std::filesystem::path fileOf(const std::string& name) const {
        return folder_ / (name + ".png");
    }

    std::filesystem::path folder_;
};

} // namespace tarnwick::player
