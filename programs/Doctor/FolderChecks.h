// The folders that are written to, and the installed parts of Tarnwick.
#pragma once

#include "programs/Doctor/Check.h"

namespace tarnwick {

Checks folderChecks();
Checks programChecks();

} // namespace tarnwick
