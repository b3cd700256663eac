#include "programs/Terminal/ExportProgress.h"

#include <array>
#include <cstdio>
#include <string>

namespace tarnwick {
namespace {

// "41.7 frames/s, 1:05 left"; empty before the first frame. After the last one the encoder may
// still work for long.
std::string pace(std::int64_t done, std::int64_t total, double elapsed) {
    if (done <= 0 || elapsed <= 0)
        return "";
    if (done >= total)
        return "encoding the rest";
    const double rate = static_cast<double>(done) / elapsed;
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%.1f frames/s, %s left", rate,
                  clockText(static_cast<double>(total - done) / rate).c_str());
    return text.data();
}

} // namespace

void ExportProgress::show(std::int64_t done, std::int64_t total) {
    total_ = total;
    const double elapsed = std::chrono::duration<double>(Clock::now() - begin_).count();
    bar_.show(done, total, pace(done, total, elapsed));
}

} // namespace tarnwick
