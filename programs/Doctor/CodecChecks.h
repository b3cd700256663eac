// The codecs that exports and channels use, and the fonts.
#pragma once

#include "programs/Doctor/Check.h"

namespace tarnwick {

Checks codecChecks();
Checks fontChecks();

} // namespace tarnwick
