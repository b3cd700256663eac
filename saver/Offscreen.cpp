#include "saver/Offscreen.h"

#include "saver/HostError.h"
#include "saver/PictureTarget.h"
#include "saver/TarnwickSaverView.h"

namespace tarnwick {
namespace {

void drawFrames(MTKView& metal, double seconds, OffscreenRun& run) {
    auto owned = std::make_unique<PictureTarget>(*metal.device(), metal.frame().pixels());
    PictureTarget& target = *owned;
    metal.setTarget(std::move(owned));
    metal.draw();
    target.waitUntilDrawn();
    const double start = currentMediaTime();
    while (currentMediaTime() - start < seconds && !metal.device()->isLost()) {
        metal.draw();
        ++run.frames;
    }
    target.waitUntilDrawn();
    run.seconds = currentMediaTime() - start;
    run.last = target.lastPicture();
}

} // namespace

OffscreenRun drawOffscreen(const Bundle& bundle, ScreenKind kind, const PixelSize& size,
                           double seconds) {
    const Rectangle frame{0, 0, static_cast<double>(size.width), static_cast<double>(size.height)};
    const TarnwickSaverView view(frame, kind, bundle);
    OffscreenRun run;
    run.failure = view.failure();
    run.settingsRemarks = view.settingsRemarks();
    if (run.failure) {
        run.last = blackPicture(size);
        view.drawRect(run.last);
        return run;
    }
    run.device = view.metal()->device()->info().name;
    drawFrames(*view.metal(), seconds, run);
    run.absence = view.absence();
    if (run.last.bytes.empty())
        throw HostError("The device " + run.device + " drew no picture.");
    return run;
}

} // namespace tarnwick
