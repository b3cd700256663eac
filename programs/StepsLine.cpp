#include "programs/StepsLine.h"

#include <cinttypes>
#include <cstdio>
#include <unistd.h>

namespace tarnwick {

StepsLine::StepsLine() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

StepsLine::~StepsLine() {
    if (isShown_)
        std::fputs("\r\033[K", stderr);
}

void StepsLine::show(std::int64_t step, std::int64_t goal) {
    if (!isTerminal_)
        return;
    std::fprintf(stderr, "\r\033[KStep %" PRId64 " of %" PRId64, step, goal);
    std::fflush(stderr);
    isShown_ = true;
}

} // namespace tarnwick
