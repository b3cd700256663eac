// The screen saver's own program, which lies beside this one.
#pragma once

#include <span>
#include <string_view>

namespace tarnwick {

// Becomes that program, with `words` behind its name. Throws CommandError where it cannot be run.
[[noreturn]] void becomeSaver(std::span<const std::string_view> words);

} // namespace tarnwick
