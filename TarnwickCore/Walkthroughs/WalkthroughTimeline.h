// The times at which the pages of a walkthrough are shown.
#pragma once

#include <cstdint>
#include <vector>

namespace tarnwick {

// All pages are shown equally long, stage after stage.
struct WalkthroughTimeline {
    double pageSeconds = 0;               // seconds per page, above 0
    std::vector<std::int64_t> pageCounts; // per stage, each at least 0

    bool operator==(const WalkthroughTimeline&) const = default;

    // In seconds. A stage that does not exist is a violation. start() also accepts the number of
    // stages: the end of the last stage.
    double duration(std::int64_t stage) const;
    double start(std::int64_t stage) const;
    double total() const;

    // The page shown `time` seconds after the start of the stage: the first page before its start,
    // the last page after its end, 0 if it has no pages. A time whose page number is not finite or
    // does not fit into 64 bits is a violation.
    std::int64_t page(std::int64_t stage, double time) const;
};

} // namespace tarnwick
