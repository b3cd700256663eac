// The metadata of an episode, in comment lines such as `// @still 4`.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeMeta {
    std::int64_t number = 1;
    std::string title = "Untitled";
    double length = 60;                   // seconds of the episode's movie, above 0
    double variationLength = 30;          // seconds of each variation, above 0
    std::vector<std::int64_t> variations; // indices of the published variations, each above 0
    double still = 10;                    // time of the still in seconds, at least 0
    std::string teaches;                  // one line, as are the texts below; may be empty
    std::string category;
    std::string tags;
    std::string finalTitle; // of the last stage of the walkthrough
    std::string finalSummary;

    bool operator==(const EpisodeMeta&) const = default;

    // The metadata in `source`. If several lines have the same key, the last one is used. Lines
    // whose value is invalid for their key are ignored. "inf" is a valid number. Accepts any bytes;
    // never fails.
    static EpisodeMeta parse(std::string_view source) { return parse(source, nullptr); }
    // The same, and adds the keys of lines with a valid value to `given`, which may be null.
    static EpisodeMeta parse(std::string_view source, std::set<std::string_view>* given);

    // The keys of the lines, without the @; the description of the value of a key, for people; and
    // whether the whole of `value` is valid for the key.
    static std::vector<std::string_view> keyNames();
    static std::string_view valueOf(std::string_view keyName);
    static bool takes(std::string_view keyName, std::string_view value);
};

} // namespace tarnwick
