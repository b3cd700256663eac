// Covers several screens, each by a process of its own.
#pragma once

#include <span>

namespace tarnwick {

// Runs this program again for each of `screens` screens, with the same words and "--output N",
// until one of the processes ends, because the user is back, or a signal arrives. Ends the others.
// A process cannot outlive this one. Blocks. Throws HostError if no process can be started.
void coverScreens(unsigned screens, std::span<const char* const> words);

} // namespace tarnwick
