// Shows a saver on a surface until the surface is closed or a signal ends the process.
#pragma once

#include "saver/HostSurface.h"
#include "saver/TarnwickSaverView.h"

#include <functional>

namespace tarnwick {

// What is shown.
struct HostedSaver {
    Bundle bundle;
    ScreenKind kind = ScreenKind::fullScreen;
    std::optional<double> share; // of the machine, (0, 1]; absent: the default of --share
    SaverChoices choices;
};

// Blocks. Calls `failed` with the saver's failure before the failure screen is shown, and with the
// reason why frames are black if the device cannot make the GPU objects of the episode; `remarked`
// with errors in the settings. The process then ends within two seconds, also
// while the device still draws: with status 1 if `failed` was called, else 0.
void showInWindow(const HostedSaver& saver, HostSurface& window,
                  const std::function<void(const std::string&)>& failed,
                  const std::function<void(const std::string&)>& remarked);

} // namespace tarnwick
