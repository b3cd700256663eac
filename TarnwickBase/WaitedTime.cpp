#include "TarnwickBase/WaitedTime.h"

#include <algorithm>

namespace tarnwick {

WaitedTime::Clock::duration WaitedTime::look(Clock::time_point now) {
    sum += std::min<Clock::duration>(now - last, longestStep);
    last = now;
    return sum;
}

} // namespace tarnwick
