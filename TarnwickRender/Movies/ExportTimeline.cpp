#include "TarnwickRender/Movies/ExportTimeline.h"

#include "TarnwickCore/Movies/ExportPlan.h"
#include "TarnwickRender/ExportError.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

// Above any movie, and so small that sums fit.
constexpr double mostFrames = 0x1p52;

std::int64_t countOf(double duration, std::int64_t fps) {
    if (!(std::abs(duration * static_cast<double>(fps)) < mostFrames))
        throw ExportError(ExportError::Setup{"the duration is infinite, NaN or too large"});
    return ExportPlan::frameCount(duration, fps);
}

} // namespace

ExportTimeline ExportTimeline::of(std::span<const ExportSegment> segments, std::int64_t fps) {
    if (segments.empty())
        throw ExportError(ExportError::Setup{"nothing to export"});
    ExportTimeline timeline{.fps = fps};
    std::int64_t first = 0;
    for (const ExportSegment& segment : segments) {
        const std::int64_t count = countOf(segment.duration, fps);
        if (segment.timeline.performance() && segment.loop > 0)
            throw ExportError(ExportError::Setup{"a performance has no crossfaded loop"});
        const std::int64_t fade = ExportPlan::crossfadeFrames(segment.loop, segment.duration, fps);
        timeline.entries.push_back({&segment, first, count, std::min(fade, count)});
        first += count;
        if (static_cast<double>(first) >= mostFrames)
            throw ExportError(ExportError::Setup{"the movie is too long to export"});
    }
    return timeline;
}

std::int64_t ExportTimeline::mostFade() const {
    std::int64_t most = 0;
    for (const Entry& entry : entries)
        most = std::max(most, entry.fade);
    return most;
}

bool keepsState(const ShaderProgram& program) {
    return program.isParticles() || program.usesInputs();
}

float ownWeight(std::int64_t left, std::int64_t fade) {
    return static_cast<float>(left) / static_cast<float>(fade + 1);
}

} // namespace tarnwick
