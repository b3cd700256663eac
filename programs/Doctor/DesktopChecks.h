// The display, the sound server and the keyring.
#pragma once

#include "programs/Doctor/Check.h"

namespace tarnwick {

Checks displayChecks();
Checks soundChecks();
Checks keyringChecks(); // waits a few seconds for its answer

} // namespace tarnwick
