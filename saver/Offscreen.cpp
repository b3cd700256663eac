#include "saver/Offscreen.h"

#include "TarnwickRender/Targets/PictureTarget.h"
#include "saver/HostError.h"
#include "saver/TarnwickSaverView.h"

namespace tarnwick {
namespace {

constexpr double longestWait = 0.1; // seconds between two checks of how long the frames take

// Returns whether the frames do not take too long.
bool waitUntilDrawn(TarnwickSaverView& view, MTKView& metal) {
    while (!view.failure() && !metal.waitUntilDrawn(longestWait))
        view.judgeFrames();
    return !view.failure();
}

// Returns false if the frames before it take too long.
bool drawNext(TarnwickSaverView& view, MTKView& metal) {
    view.judgeFrames();
    while (!view.failure() && !metal.waitForRoom(longestWait))
        view.judgeFrames();
    if (!view.failure())
        metal.draw();
    return !view.failure();
}

PictureTarget& attachTarget(MTKView& metal) {
    auto owned = std::make_unique<PictureTarget>(*metal.device(), metal.frame().pixels());
    PictureTarget& target = *owned;
    metal.setTarget(std::move(owned));
    return target;
}

// Draws until `seconds` have passed since `start`. A device that is lost is opened again, and
// `target` is then another one.
void drawUntil(TarnwickSaverView& view, double start, double seconds, PictureTarget*& target,
               int& frames) {
    bool isDrawn = true; // into the target
    while (!view.failure() && (currentMediaTime() - start < seconds || !isDrawn)) {
        if (view.hasLostDevice()) {
            view.reopen();
            isDrawn = false;
            if (!view.failure())
                target = &attachTarget(*view.metal());
        } else if (drawNext(view, *view.metal())) {
            isDrawn = true;
            ++frames;
        }
    }
}

// The first frame is not timed.
void drawFrames(TarnwickSaverView& view, double seconds, OffscreenRun& run) {
    PictureTarget* target = &attachTarget(*view.metal());
    if (!drawNext(view, *view.metal()) || !waitUntilDrawn(view, *view.metal()))
        return;
    const double start = currentMediaTime();
    drawUntil(view, start, seconds, target, run.frames);
    if (view.failure() || !waitUntilDrawn(view, *view.metal()))
        return;
    run.seconds = currentMediaTime() - start;
    run.last = target->lastPicture();
}

void keepFailure(const TarnwickSaverView& view, const PixelSize& size, OffscreenRun& run) {
    run.failure = view.failure();
    run.last = blackPicture(size);
    view.drawRect(run.last);
}

} // namespace

OffscreenRun drawOffscreen(const Bundle& bundle, ScreenKind kind, const PixelSize& size,
                           double seconds, const SaverChoices& choices) {
    const Rectangle frame{0, 0, static_cast<double>(size.width), static_cast<double>(size.height)};
    const auto view =
        std::make_shared<TarnwickSaverView>(frame, kind, bundle, currentMediaTime, choices);
    OffscreenRun run{.view = view};
    run.settingsRemarks = view->settingsRemarks();
    if (!view->failure()) {
        run.device = view->metal()->device()->info().name;
        drawFrames(*view, seconds, run);
        run.absence = view->absence();
    }
    if (view->failure())
        keepFailure(*view, size, run);
    if (run.last.bytes.empty())
        throw HostError("The device " + run.device + " drew no picture.");
    return run;
}

} // namespace tarnwick
