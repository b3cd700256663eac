#include "TarnwickCore/Walkthroughs/WalkthroughTimeline.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace tarnwick {

double WalkthroughTimeline::duration(std::int64_t stage) const {
    precondition(stage >= 0 && static_cast<std::size_t>(stage) < pageCounts.size(),
                 "the stage exists", "stage", stage, "stages", pageCounts.size());
    return pageSeconds * static_cast<double>(pageCounts[static_cast<std::size_t>(stage)]);
}

double WalkthroughTimeline::start(std::int64_t stage) const {
    precondition(stage >= 0 && static_cast<std::size_t>(stage) <= pageCounts.size(),
                 "the stage exists or is the end", "stage", stage, "stages", pageCounts.size());
    double seconds = 0;
    for (std::int64_t before = 0; before < stage; ++before)
        seconds += duration(before);
    return seconds;
}

double WalkthroughTimeline::total() const {
    return pageSeconds * static_cast<double>(
                             std::accumulate(pageCounts.begin(), pageCounts.end(), std::int64_t{}));
}

std::int64_t WalkthroughTimeline::page(std::int64_t stage, double time) const {
    constexpr double limit = 0x1p63;
    precondition(stage >= 0 && static_cast<std::size_t>(stage) < pageCounts.size(),
                 "the stage exists", "stage", stage, "stages", pageCounts.size());
    const double page = time / pageSeconds;
    precondition(page >= -limit && page < limit, "a page number fits into 64 bits", "page", page);
    const std::int64_t last = pageCounts[static_cast<std::size_t>(stage)] - 1;
    return std::max(std::min(static_cast<std::int64_t>(page), last), std::int64_t{0});
}

} // namespace tarnwick
