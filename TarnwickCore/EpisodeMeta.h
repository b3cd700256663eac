// What an episode says about itself as a piece of work, in comment lines such as `// @still 4`.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeMeta {
    std::int64_t number = 1;
    std::string title = "Untitled";
    double length = 60;                   // seconds of the episode's video, above 0
    double variationLength = 30;          // seconds of each variation, above 0
    std::vector<std::int64_t> variations; // the indices on offer, each above 0
    double still = 10;                    // the still picture's time in seconds, from 0 on
    std::string teaches;
    std::string category;
    std::string tags;
    std::string finalTitle; // of the closing card
    std::string finalSummary;

    bool operator==(const EpisodeMeta&) const = default;

    // Of several lines with one key the last counts; lines whose value does not fit their key are
    // ignored. "inf" is a number like others. Any bytes are taken; never fails.
    static EpisodeMeta parse(std::string_view source);

    // The keys of the lines, without their @; what the value of one is, for people to read; and
    // whether a value is that, all of it.
    static std::vector<std::string_view> keyNames();
    static std::string_view valueOf(std::string_view keyName);
    static bool takes(std::string_view keyName, std::string_view value);
};

} // namespace tarnwick
