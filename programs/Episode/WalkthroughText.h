// A walkthrough as text.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "programs/Terminal/Colours.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// Page by page, for people: a plus before each added line.
std::string walkthroughText(std::span<const WalkthroughStage> stages, Colours colours);

// JSON, for tools. `paths` are the files of the stages, the episode's last.
std::string walkthroughJSON(std::span<const WalkthroughStage> stages,
                            std::span<const Episode> episodes, std::int64_t capacity);

} // namespace tarnwick
