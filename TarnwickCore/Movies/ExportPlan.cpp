#include "TarnwickCore/Movies/ExportPlan.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

double fromZero(double seconds) {
    return seconds > 0 ? seconds : 0;
}

} // namespace

ExportPlan::ExportPlan(const ExportPreset& preset, double start, double duration)
    : preset(preset), start(fromZero(start)), duration(fromZero(duration)) {}

std::int64_t ExportPlan::frameCount(double duration, std::int64_t fps) {
    const double frames = std::round(duration * static_cast<double>(fps));
    precondition(std::abs(frames) < 0x1p63, "a frame count fits into 64 bits", "frames", frames);
    return std::max<std::int64_t>(1, static_cast<std::int64_t>(frames));
}

std::int64_t ExportPlan::crossfadeFrames(double loop, double duration, std::int64_t fps) {
    const double seconds = std::min(loop, duration * 0.5);
    return seconds > 0 ? frameCount(seconds, fps) : 0;
}

std::int64_t ExportPlan::frameCount() const {
    return frameCount(duration, preset.fps);
}

float ExportPlan::time(std::int64_t frame) const {
    return static_cast<float>(start + static_cast<double>(frame) / static_cast<double>(preset.fps));
}

} // namespace tarnwick
