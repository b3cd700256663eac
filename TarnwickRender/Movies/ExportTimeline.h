// Which frames of a movie belong to which of its segments.
#pragma once

#include "TarnwickRender/ExportSegment.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tarnwick {

struct ExportTimeline {
    struct Entry {
        const ExportSegment* segment = nullptr;
        std::int64_t first = 0; // frame of the movie
        std::int64_t count = 0; // frames, at least 1
        std::int64_t fade = 0;  // frames at its end that are crossfaded

        std::int64_t end() const { return first + count; }
    };
    std::vector<Entry> entries{};
    std::int64_t fps = 1;

    // Borrows the segments. Throws ExportError where there are none, or where a duration cannot be
    // counted in frames.
    static ExportTimeline of(std::span<const ExportSegment> segments, std::int64_t fps);

    std::int64_t frameCount() const { return entries.back().end(); }
    std::int64_t mostFade() const; // of all entries
};

// Whether the picture of a frame depends on the frames before it.
bool keepsState(const ShaderProgram& program);

// The weight of a segment's own frame in the mix with the one before the beginning that it leads
// into; `left` is how many frames are left with it, 1 to `fade`. Linear in time: each frame of the
// fade, and the step into and out of it, changes it by as much. The same for samples.
float ownWeight(std::int64_t left, std::int64_t fade);

} // namespace tarnwick
