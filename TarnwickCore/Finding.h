// A diagnostic as the author of an episode reads it.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string>

namespace tarnwick {

struct Finding {
    Diagnostic diagnostic;
    std::string hint; // how to correct it: one or more lines without a full stop; may be empty

    bool operator==(const Finding&) const = default;
};

} // namespace tarnwick
