// Shows a saver in an X11 window until the window goes or the process is asked to end.
#pragma once

#include "saver/HostWindow.h"
#include "saver/TarnwickSaverView.h"

#include <functional>

namespace tarnwick {

// Blocks. `failed` hears what the saver's failure is before the failure screen is shown, and why
// its frames are black where the device cannot make what its episode needs; `remarked` hears what
// is amiss with the settings. Throws HostError. To be called while the process has one thread.
void showInWindow(const Bundle& bundle, ScreenKind kind, const WindowChoice& choice,
                  const std::function<void(const std::string&)>& failed,
                  const std::function<void(const std::string&)>& remarked);

} // namespace tarnwick
