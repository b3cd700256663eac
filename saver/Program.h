// The program tarnwick-saver: its words and its statuses.
#pragma once

#include "TarnwickBase/Status.h"

#include <iosfwd>
#include <span>

namespace tarnwick {

// Does what the arguments (without the program's name) ask for and says how it went. Gives the
// status to exit with. Blocks. Signals that ask the process to end are main()'s (EndSignals.h).
Status runSaver(std::span<const char* const> arguments, std::ostream& out, std::ostream& errors);

} // namespace tarnwick
