// The program tarnwick-saver: its command line and its statuses.
#pragma once

#include "TarnwickBase/Status.h"

#include <iosfwd>
#include <span>

namespace tarnwick {

// Runs the saver as the arguments (without the program's name) say, and prints results and errors.
// Returns the exit status. Blocks. main() handles the signals that end the process (EndSignals.h).
Status runSaver(std::span<const char* const> arguments, std::ostream& out, std::ostream& errors);

} // namespace tarnwick
