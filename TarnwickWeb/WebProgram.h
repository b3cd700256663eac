// An episode compiled for browsers: the WGSL of its functions.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct WebProgram {
    std::vector<msl::EntryPoint> functions; // that a page runs
    std::uint32_t particleBytes = 0;        // of a particle's record; 0 for other kinds

    // Blocks. Throws WebError if WGSL cannot express the episode. Whether it compiles at all should
    // be known before, because only EpisodeCheck has findings.
    static WebProgram make(const Episode& episode);

    const msl::EntryPoint* functionNamed(std::string_view name) const; // null without one
};

} // namespace tarnwick
