// The values of parameters as a function of time.
#pragma once

#include "TarnwickCore/Animation/Settings.h"

#include <functional>

namespace tarnwick {

// `time` is in seconds of the episode. Called in any order, on the thread that draws.
using ValuesAt = std::function<ParamValues(double time)>;

// The values of the settings at each time; empty if they have no keys.
inline ValuesAt valuesOverTime(const Settings& settings) {
    if (settings.keys.isEmpty())
        return {};
    return [settings](double time) { return settings.valuesAt(time); };
}

} // namespace tarnwick
