// The program tarnwick-saver: its words and its statuses.
#pragma once

#include <iosfwd>
#include <span>

namespace tarnwick {

// Does what the arguments (without the program's name) ask for and says how it went. Gives the
// status to exit with: 0, 1 after a failure, 2 after a command line that says nothing sensible.
// Blocks. To be called while the process has one thread.
int runSaver(std::span<const char* const> arguments, std::ostream& out, std::ostream& errors);

} // namespace tarnwick
