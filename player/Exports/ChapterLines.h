// A list of chapters as people write it: a line each, "1:05 The second part".
#pragma once

#include "TarnwickCore/Movies/VideoChapters.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

struct ChapterLines {
    std::vector<VideoChapters::Chapter> chapters{}; // in the order of their times
    std::string error{}; // one sentence about the first line that is not a chapter; else empty

    // Each line is a time and a title. The time is seconds ("65", "65.5"), M:SS or H:MM:SS, with
    // decimals. Empty lines are ignored. Times at or after `duration` seconds are an error.
    static ChapterLines read(std::string_view text, double duration);
};

// Seconds of "65.5", "1:05.5" or "1:00:05"; absent for any other text.
std::optional<double> clockSeconds(std::string_view text);

} // namespace tarnwick::player
