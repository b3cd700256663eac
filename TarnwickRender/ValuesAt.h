// The values of parameters as a function of time.
#pragma once

#include "TarnwickCore/Params.h"

#include <functional>

namespace tarnwick {

// `time` is in seconds of the episode. Called in any order, on the thread that draws.
using ValuesAt = std::function<ParamValues(double time)>;

} // namespace tarnwick
