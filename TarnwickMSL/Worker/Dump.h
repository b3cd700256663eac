// The compiler's intermediate forms on standard output, for work on its steps.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <string_view>

namespace tarnwick::msl {

// Prints the front end's messages, signatures and module; false if the program has errors.
bool dumpParsed(std::string_view source, const StandardLibrary& library);

// Prints what the step makes of the text (Passes.h, runStep); false if that is an error, which it
// prints to standard error.
bool dumpStep(std::string_view step, std::string_view text);

} // namespace tarnwick::msl
