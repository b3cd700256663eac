// The values of parameters as a function of time.
#pragma once

#include "TarnwickCore/Params.h"

#include <functional>

namespace tarnwick {

// Of a time in seconds of the episode; may be asked in any order, on the thread that draws.
using ValuesAt = std::function<ParamValues(double time)>;

} // namespace tarnwick
