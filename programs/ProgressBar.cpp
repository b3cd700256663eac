#include "programs/ProgressBar.h"

#include <cinttypes>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace tarnwick {

namespace {

constexpr std::int64_t width = 30; // characters

} // namespace

ProgressBar::ProgressBar(std::string_view unit)
    : unit_(unit), isTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (isShown_)
        std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(std::int64_t done, std::int64_t goal, std::string_view more) {
    using std::chrono::steady_clock, std::chrono::milliseconds;
    if (!isTerminal_ || steady_clock::now() - begin_ < milliseconds(500))
        return;
    const double share = goal > 0 ? static_cast<double>(done) / static_cast<double>(goal) : 1;
    std::string bar(static_cast<std::size_t>(share * width), '#');
    bar.resize(width, '.');
    std::fprintf(stderr, "\r\033[K[%s] %s %" PRId64 " of %" PRId64 "%s%s", bar.c_str(),
                 std::string(unit_).c_str(), done, goal, more.empty() ? "" : ", ",
                 std::string(more).c_str());
    std::fflush(stderr);
    isShown_ = true;
}

} // namespace tarnwick
