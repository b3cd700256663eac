// The end of a program whose threads may still be at work.
#pragma once

namespace tarnwick {

// Ends the process with `status`: writes what the standard streams hold, and runs neither the
// destructors of static objects nor the handlers of exit(). A thread that was left to itself, for
// instance because a driver does not return from a call, may use static objects until the end.
// Called by main() once its own objects are gone.
[[noreturn]] void endNow(int status);

} // namespace tarnwick
