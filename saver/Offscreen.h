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
    // Owns the view. Its destructor waits for a frame that the device still draws, for example
    // after frames that take too long.
    std::shared_ptr<const TarnwickSaverView> view;
    std::string device; // its name; empty after a failure
    int frames = 0;     // after the first, which is not timed because the driver compiles during it
    double seconds = 0; // duration of these frames
    Picture last;       // the last frame, or the failure screen
    std::optional<std::string> failure;
    std::optional<std::string> absence;       // why the last frame is black without a failure
    std::vector<std::string> settingsRemarks; // errors in the settings document
};

// Draws frames for `seconds` of the host clock, as fast as the device can, at most three in
// flight. The saver's clock follows the host's, as on a screen. Blocks. Throws
// HostError if the device cannot make pictures of this size.
OffscreenRun drawOffscreen(const Bundle& bundle, ScreenKind kind, const PixelSize& size,
                           double seconds, const SaverChoices& choices = {});

} // namespace tarnwick
