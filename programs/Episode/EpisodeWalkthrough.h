// The walkthrough that a command line selects, and its programs.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/WalkthroughRenderer.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Terminal/ProgressBar.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeWalkthrough {
    std::vector<Episode> episodes; // the stages, the episode itself last
    Settings settings{};           // of the episode; stages use them too
    NamedChannels channels{};      // the same

    const Episode& episode() const { return episodes.back(); }
    std::vector<WalkthroughStage> stages(const WalkthroughRenderer& renderer) const;
};

// From the operand and --stages. Throws CommandError.
EpisodeWalkthrough episodeWalkthroughOf(const Arguments& arguments);

// The programs of all stages, the episode's last. Throws CommandError, which names the stage and
// the line; the compiler's findings are printed before.
std::vector<std::shared_ptr<const ShaderProgram>> programsOf(const EpisodeWalkthrough& walkthrough,
                                                             gpu::Device& device, ProgressBar& bar);

// For pages of that many pixels. Throws CommandError if they are too small.
WalkthroughRenderer walkthroughRenderer(std::int64_t width, std::int64_t height);

} // namespace tarnwick
