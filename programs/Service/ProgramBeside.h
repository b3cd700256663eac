// The other programs of Tarnwick.
#pragma once

#include "TarnwickBase/InstalledFiles.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// Replaces this process by a program with the arguments `words`. Throws CommandError if there is no
// such program; `package` is the part of Tarnwick that has it: "the player".
[[noreturn]] void becomeProgram(InstalledFile program, std::span<const std::string> words,
                                std::string_view package);

[[noreturn]] void becomeSaver(std::span<const std::string> words);
[[noreturn]] void becomePlayer(std::span<const std::string> words);

} // namespace tarnwick
