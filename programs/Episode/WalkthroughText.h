// A walkthrough as text.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "programs/Terminal/Colours.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// Page after page, for people: a plus before each added line.
std::string walkthroughText(std::span<const WalkthroughStage> stages, Colours colours);

// For tools. `episodes` are the stages' files, the episode itself last.
std::string walkthroughJSON(std::span<const WalkthroughStage> stages,
                            std::span<const Episode> episodes, std::int64_t capacity);

} // namespace tarnwick
