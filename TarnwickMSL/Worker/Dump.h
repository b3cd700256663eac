// The compiler's intermediate forms on standard output, for work on its steps.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <string_view>

namespace tarnwick::msl {

// Prints the front end's messages, signatures and module; false if the program has errors.
bool dumpParsed(std::string_view source, const StandardLibrary& library);

// Prints the result of the step for the text (Passes.h, runStep). On an error prints the error to
// standard error and returns false.
bool dumpStep(std::string_view step, std::string_view text);

} // namespace tarnwick::msl
