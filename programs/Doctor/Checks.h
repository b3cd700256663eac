// What Tarnwick needs of the system: what works, what is missing, and the Debian package that has
// it.
#pragma once

#include "programs/Doctor/Check.h"

namespace tarnwick {

std::string rawValue(CheckResult result); // the case's own name

// All checks, in the order of the report. Blocks for a few seconds.
Checks allChecks();

} // namespace tarnwick
