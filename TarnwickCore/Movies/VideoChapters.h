// The chapter list of a movie: an introduction, then one segment after another.
#pragma once

#include "TarnwickCore/Animation/Variations.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// A text that is not a valid chapter list, or a list that JSON cannot represent. what() is one
// sentence.
struct VideoChaptersError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct VideoChapters {
    struct Chapter {
        double at = 0; // seconds from the start of the movie
        std::string title;
        std::string settings; // "hue 0.3, warp 1.5"

        bool operator==(const Chapter&) const = default;
    };

    double duration = 0; // seconds of the whole movie
    std::vector<Chapter> chapters;

    bool operator==(const VideoChapters&) const = default;

    // One chapter per variation, in order. Chapter n, from 0, starts at introLength + segmentLength
    // * n seconds; the introduction has no chapter. Its title is the highlights of the variation or
    // "Default settings", its settings are all values by name.
    static VideoChapters variations(std::span<const Variation> variations, double segmentLength,
                                    double introLength);

    // {"duration":70.0,"chapters":[{"at":10.0,"title":"warp 1.5","settings":"hue 0.3, warp 1.5"}]}.
    // Invalid UTF-8 is written as U+FFFD. Throws VideoChaptersError on a time that is not finite.
    std::string json() const;
    // All members are required, others are ignored. Throws VideoChaptersError.
    static VideoChapters decode(std::string_view json);
};

} // namespace tarnwick
