// The one way in which a broken promise of the program's own (never of its user) ends it.
#pragma once

#include <string_view>

namespace tarnwick {

// Stops the process with `why` on standard error, unless `condition` holds. `why` says why the
// condition must hold, as a sentence. May be called from any thread.
void precondition(bool condition, std::string_view why);

} // namespace tarnwick
