// What the compilation of an episode gave, for a page.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarnwick {

struct ShownFinding {
    std::string severity; // "error", "warning", "note"
    std::string message;
    std::int64_t line = 0, column = 0; // as in Diagnostic
    std::string excerpt; // the line with its number, and a caret below it; may be empty
    std::string hint;    // may be empty
    std::string file;    // name of another file than the episode; empty: the episode
};

struct EpisodeOutcome {
    std::string document; // of webDocument(); empty if the episode cannot be drawn
    std::string failure;  // one sentence if it cannot be drawn, else empty
    std::vector<ShownFinding> findings;

    bool isDrawn() const { return !document.empty(); }
};

// Compiles an episode with settings that are fitted to it. The episode's path is the name of its
// file, because pages do not tell where it is. Blocks.
using EpisodeCompiler = std::function<EpisodeOutcome(const Episode&, const Settings&)>;

} // namespace tarnwick
