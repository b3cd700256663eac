// A walkthrough as text.
#pragma once

#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "programs/Terminal/Colours.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// Page after page, for people: a plus before each added line.
std::string walkthroughText(std::span<const WalkthroughStage> stages, Colours colours);

// For tools. `paths` names each stage's file, the episode's last.
std::string walkthroughJSON(std::span<const WalkthroughStage> stages,
                            std::span<const std::string_view> paths, std::int64_t capacity);

} // namespace tarnwick
