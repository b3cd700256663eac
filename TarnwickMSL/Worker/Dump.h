// The front end's result as text, for those who work on the steps after it.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <string_view>

namespace tarnwick::msl {

// Prints messages, signatures and the module; false where the program has errors.
bool dumpParsed(std::string_view source, const StandardLibrary& library);

} // namespace tarnwick::msl
