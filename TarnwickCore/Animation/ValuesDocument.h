// Base values of parameters in a document of their own.
#pragma once

#include "TarnwickCore/Animation/DocumentError.h"
#include "TarnwickCore/Params.h"

#include <string_view>

namespace tarnwick {

// Reads the values of a document of settings, or of a JSON object of numbers: {"speed": 0.6}.
// Throws DocumentError.
ParamValues decodeValues(std::string_view json);

} // namespace tarnwick
