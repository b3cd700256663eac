// When each page of a walkthrough is shown.
#pragma once

#include <cstdint>
#include <vector>

namespace tarnwick {

// Every page is shown for as long as every other, stage after stage.
struct WalkthroughTimeline {
    double pageSeconds = 0;               // seconds each page is shown, above 0
    std::vector<std::int64_t> pageCounts; // of each stage, from 0 on

    bool operator==(const WalkthroughTimeline&) const = default;

    // In seconds. A stage that is not there stops the program; start() takes the end of the last
    // stage as well, as the number of stages.
    double duration(std::int64_t stage) const;
    double start(std::int64_t stage) const;
    double total() const;

    // The page shown `time` seconds after the stage's start: the first one before it, the last one
    // after its end, 0 where it has none. A time that in pages is not finite or not within 64 bits
    // stops the program.
    std::int64_t page(std::int64_t stage, double time) const;
};

} // namespace tarnwick
