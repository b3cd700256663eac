// Draws a saver off screen.
#pragma once

#include "TarnwickPlatform/Bundle/Bundle.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/Geometry.h"
#include "saver/TarnwickSaverView.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

struct OffscreenRun {
    // Keeps what drew. Its end waits for a frame that the device is still at, as after frames that
    // take too long.
    std::shared_ptr<const TarnwickSaverView> view;
    std::string device; // its name; empty after a failure
    int frames = 0;     // drawn after the first, which is not timed: the driver compiles in it
    double seconds = 0; // that they took
    Picture last;       // the last frame, or the failure screen
    std::optional<std::string> failure;
    std::optional<std::string> absence;       // why the last frame is black though nothing failed
    std::vector<std::string> settingsRemarks; // what is amiss with the settings document
};

// Draws frames for `seconds` of the host clock, one after the other as fast as the device can, at
// most three in flight. The saver's clock follows the host's, as on a screen. Blocks. Throws
// HostError when the device gives no pictures of this size.
OffscreenRun drawOffscreen(const Bundle& bundle, ScreenKind kind, const PixelSize& size,
                           double seconds);

} // namespace tarnwick
