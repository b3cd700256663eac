// A message about an episode as its author reads it.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string>

namespace tarnwick {

struct Finding {
    Diagnostic diagnostic;
    std::string hint; // what helps, in a line or more without a full stop; may be empty

    bool operator==(const Finding&) const = default;
};

} // namespace tarnwick
