// The chapter list of a video: an introduction, then one segment after another.
#pragma once

#include "TarnwickCore/Animation/Variations.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Text that holds no chapter list, or a list that JSON has no form for; what() is one sentence.
struct VideoChaptersError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct VideoChapters {
    struct Chapter {
        double at = 0; // seconds from the start of the video
        std::string title;
        std::string settings; // "hue 0.3, warp 1.5"

        bool operator==(const Chapter&) const = default;
    };

    double duration = 0; // seconds of the whole video
    std::vector<Chapter> chapters;

    bool operator==(const VideoChapters&) const = default;

    // One chapter a variation, in order. It starts where its segment starts, at introLength +
    // segmentLength * its place; the introduction has no chapter of its own. Its title is the
    // variation's highlights or "Default settings", its settings are all values by name.
    static VideoChapters variations(std::span<const Variation> variations, double segmentLength,
                                    double introLength);

    // {"duration":70.0,"chapters":[{"at":10.0,"title":"warp 1.5","settings":"hue 0.3, warp 1.5"}]}.
    // Bytes that are not UTF-8 are written as U+FFFD. Throws VideoChaptersError on a time that is
    // no finite number.
    std::string json() const;
    // All members are required, others are passed over. Throws VideoChaptersError.
    static VideoChapters decode(std::string_view json);
};

} // namespace tarnwick
