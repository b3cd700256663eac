// Which walkthrough a command line asks for, and its programs.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/WalkthroughRenderer.h"
#include "programs/CommandLine/Arguments.h"
#include "programs/Terminal/ProgressBar.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeWalkthrough {
    std::vector<Episode> episodes; // the stages, the episode itself last
    Settings settings{};           // of the episode; stages take them too

    const Episode& episode() const { return episodes.back(); }
    std::vector<WalkthroughStage> stages(const WalkthroughRenderer& renderer) const;
};

// The single operand with --stages. Throws CommandError.
EpisodeWalkthrough episodeWalkthroughOf(const Arguments& arguments);

// The programs of all stages, the episode's last. Throws CommandError, which names the stage and
// the line; all that the compiler finds has been printed then.
std::vector<std::shared_ptr<const ShaderProgram>> programsOf(const EpisodeWalkthrough& walkthrough,
                                                             gpu::Device& device, ProgressBar& bar);

// Of pages of so many pixels. Throws CommandError where they are too small.
WalkthroughRenderer walkthroughRenderer(std::int64_t width, std::int64_t height);

constexpr Option stagesOption{"--stages", "FILE...",
                              "the versions that led to it, in order; up to the next option"};

} // namespace tarnwick
