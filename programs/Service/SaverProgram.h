// The screen saver's program, which is in the same folder as this one.
#pragma once

#include <span>
#include <string_view>

namespace tarnwick {

// Replaces this process by that program with the arguments `words`. Throws CommandError if it
// cannot be run.
[[noreturn]] void becomeSaver(std::span<const std::string> words);

} // namespace tarnwick
