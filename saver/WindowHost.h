// Shows a saver in an X11 window until the window goes or the process is asked to end.
#pragma once

#include "saver/HostWindow.h"
#include "saver/TarnwickSaverView.h"

#include <functional>

namespace tarnwick {

// Blocks. `failed` hears what the saver's failure is before the failure screen is shown, and why
// its frames are black where the device cannot make what its episode needs; `remarked` hears what
// is amiss with the settings. Throws HostError. The process then ends within two seconds, also
// while the device still draws: with status 1 where `failed` heard something, else 0.
void showInWindow(const Bundle& bundle, ScreenKind kind, const WindowChoice& choice,
                  const std::function<void(const std::string&)>& failed,
                  const std::function<void(const std::string&)>& remarked);

} // namespace tarnwick
