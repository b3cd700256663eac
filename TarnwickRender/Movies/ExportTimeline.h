// The frames of each segment in a movie.
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

    // Borrows the segments. Throws ExportError without segments and for a duration that is too long
    // or not finite.
    static ExportTimeline of(std::span<const ExportSegment> segments, std::int64_t fps);

    std::int64_t frameCount() const { return entries.back().end(); }
    std::int64_t mostFade() const; // the maximum of all entries
};

// Whether the picture of a frame depends on the frames before it.
bool keepsState(const ShaderProgram& program);

// The weight of a segment's own frame in a crossfade of `fade` frames, in (0, 1); `left`: remaining
// frames with this one, [1, fade]. Linear. Samples of sound use the same function.
float ownWeight(std::int64_t left, std::int64_t fade);

} // namespace tarnwick
