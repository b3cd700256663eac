// A small picture of an episode that is asked for, and what comes of it.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace tarnwick::player {

// In the order of drawing.
enum class ThumbnailRank : std::uint8_t { pointedAt, still, film };

struct ThumbnailRequest {
    std::uint64_t id = 0; // chosen by the asker; a later request of the same id replaces this
    // Read with the settings beside it, unless there is an episode.
    std::filesystem::path file{};
    std::shared_ptr<const Episode> episode{};
    Settings settings{}; // of `episode`
    PixelSize size{320, 180};
    // The first picture is of the time of the episode's still, each other one filmStep later.
    int frames = 1;
    ThumbnailRank rank = ThumbnailRank::still;
};

struct Thumbnail {
    static constexpr double filmStep = 0.1; // seconds of the episode between two pictures

    std::uint64_t id = 0;
    int frame = 0;                            // [0, ThumbnailRequest::frames)
    Picture picture{};                        // without pixels if there is a failure
    std::shared_ptr<const Episode> episode{}; // null if the file cannot be read
    std::string failure{};                    // one sentence; no frame follows
};

} // namespace tarnwick::player
