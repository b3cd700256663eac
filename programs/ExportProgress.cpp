#include "programs/ExportProgress.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace tarnwick {
namespace {

// "41.7 frames/s, 1:05 left"; empty before the first frame. Behind the last one the encoder may
// have much left to do.
std::string pace(std::int64_t done, std::int64_t total, double elapsed) {
    if (done <= 0 || elapsed <= 0)
        return "";
    if (done >= total)
        return "encoding the rest";
    const double rate = static_cast<double>(done) / elapsed;
    const auto left = static_cast<std::int64_t>(static_cast<double>(total - done) / rate + 0.5);
    std::array<char, 80> text{};
    if (left < 3600)
        std::snprintf(text.data(), text.size(), "%.1f frames/s, %" PRId64 ":%02" PRId64 " left",
                      rate, left / 60, left % 60);
    else
        std::snprintf(text.data(), text.size(),
                      "%.1f frames/s, %" PRId64 ":%02" PRId64 ":%02" PRId64 " left", rate,
                      left / 3600, left / 60 % 60, left % 60);
    return text.data();
}

} // namespace

void ExportProgress::show(std::int64_t done, std::int64_t total) {
    const Clock::time_point now = Clock::now();
    const std::string text = pace(done, total, std::chrono::duration<double>(now - begin_).count());
    bar_.show(done, total, text);
    if (bar_.isTerminal() || now - lastLine_ < std::chrono::seconds(10))
        return;
    lastLine_ = now;
    std::fprintf(stderr, "tarnwick: Frame %" PRId64 " of %" PRId64 "%s%s.\n", done, total,
                 text.empty() ? "" : ", ", text.c_str());
}

} // namespace tarnwick
