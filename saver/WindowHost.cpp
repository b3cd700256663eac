#include "saver/WindowHost.h"

#include "TarnwickBase/EndSignals.h"
#include "TarnwickRender/Targets/FrameClock.h"
#include "TarnwickRender/Targets/WindowTarget.h"
#include "saver/CopyTarget.h"
#include "saver/Guest/Priority.h"
#include "saver/GuestWork.h"

#include <algorithm>
#include <array>
#include <poll.h>

namespace tarnwick {
namespace {

constexpr double longestWait = 0.1; // seconds, for a frame that is drawn
// Seconds. Frames that began before a failure may be shown over the failure screen.
constexpr double longestStale = 1;

Rectangle frameOf(const HostSurface& window) {
    return {0, 0, static_cast<double>(window.size().width),
            static_cast<double>(window.size().height)};
}

void attach(MTKView& metal, HostSurface& window) {
    auto layer = window.newLayer(*metal.device());
    if (!layer) {
        metal.setTarget(std::make_unique<CopyTarget>(*metal.device(), window));
        return;
    }
    metal.setTarget(std::make_unique<WindowTarget>(*metal.device(), std::move(layer)));
}

// In a window of its own somebody plays with it.
void beGuest(const TarnwickSaverView& view, const HostSurface& window, std::optional<double> share,
             std::optional<GuestWork>& guest) {
    if (share || !window.isOwn())
        guest.emplace(*view.metal(), share);
}

// The device was lost: shows the episode with a new one, or its failure.
void reopen(TarnwickSaverView& view, HostSurface& window, std::optional<double> share,
            std::optional<GuestWork>& guest) {
    guest.reset();
    view.reopen();
    if (view.failure())
        return;
    attach(*view.metal(), window);
    beGuest(view, window, share, guest);
}

void showBackground(const TarnwickSaverView& view, HostSurface& window) {
    Picture picture = blackPicture(window.size());
    view.drawRect(picture);
    window.show(picture);
}

// Waits until there is something to read, or `seconds` have passed.
void wait(const HostSurface& window, const HeldSignals& signals, double seconds) {
    std::array<pollfd, 2> entries{{{.fd = window.connection(), .events = POLLIN, .revents = 0},
                                   {.fd = signals.descriptor(), .events = POLLIN, .revents = 0}}};
    const timespec time{.tv_sec = 0, .tv_nsec = static_cast<long>(seconds * 1e9)};
    ppoll(entries.data(), entries.size(), &time, nullptr);
}

// Draws a frame if one is due, can be seen, and there is room for it. Returns the seconds until the
// next step.
double drawWhenDue(MTKView& metal, HostSurface& window, FrameClock& frames,
                   std::optional<GuestWork>& guest) {
    // A guest draws one frame at a time, whose time is then known.
    if ((guest && !metal.waitUntilDrawn(longestWait)) || !metal.waitForRoom(longestWait))
        return 0;
    const double now = currentMediaTime();
    if (guest)
        guest->frameDone(metal, now);
    if (!window.isVisible())
        return window.longestWait();
    const double left = std::max(frames.secondsUntilDue(now), guest ? guest->rest(now) : 0);
    if (left > 0)
        return std::min(left, window.longestWait());
    frames.begin(now);
    window.willDraw();
    metal.draw();
    if (guest)
        guest->frameBegun(now);
    return 0;
}

// Prints each sentence once, not with each frame.
class Speaker {
  public:
    explicit Speaker(const std::function<void(const std::string&)>& failed) : failed_(failed) {}

    void say(const std::optional<std::string>& sentence) {
        if (sentence && sentence != said_)
            failed_(*sentence);
        if (sentence)
            said_ = sentence;
    }

    bool hasSpoken() const { return said_.has_value(); }

  private:
    const std::function<void(const std::string&)>& failed_;
    std::optional<std::string> said_;
};

void showUntilEnd(TarnwickSaverView& view, HostSurface& window, const HeldSignals& signals,
                  Speaker& speaker, std::optional<double> share, std::optional<GuestWork>& guest) {
    FrameClock frames(view.metal() != nullptr ? view.metal()->preferredFramesPerSecond : 1);
    double shown = 0; // time of the background, in seconds of the host clock
    bool isBackgroundStale = true;
    while (!signals.arrived()) {
        const HostSurface::News news = window.readNews();
        if (window.isGone())
            return;
        if (news.resized)
            view.setFrame(frameOf(window));
        view.judgeFrames();
        if (view.hasLostDevice())
            reopen(view, window, share, guest);
        MTKView* const metal = view.metal();
        isBackgroundStale |= news.exposed || news.resized ||
                             (view.mayHaveDrawn() && currentMediaTime() - shown > longestStale);
        if (metal == nullptr && isBackgroundStale && window.isVisible()) {
            showBackground(view, window);
            isBackgroundStale = false;
            shown = currentMediaTime();
        }
        const double left =
            metal != nullptr ? drawWhenDue(*metal, window, frames, guest) : window.longestWait();
        speaker.say(view.failure() ? view.failure() : view.absence());
        if (left > 0)
            wait(window, signals, left);
    }
}

} // namespace

void showInWindow(const HostedSaver& saver, HostSurface& window,
                  const std::function<void(const std::string&)>& failed,
                  const std::function<void(const std::string&)>& remarked) {
    HeldSignals signals;
    if (!window.isOwn())
        takeLowestPriority(); // before the threads of the device
    const ScreenKind shown = window.isPreview() ? ScreenKind::preview : saver.kind;
    // After its window, so that it is destroyed first.
    TarnwickSaverView view(frameOf(window), shown, saver.bundle, currentMediaTime, saver.choices);
    window.setTitle(view.settings().name);
    Speaker speaker(failed);
    for (const std::string& remark : view.settingsRemarks())
        remarked(remark);
    speaker.say(view.failure());
    if (!view.failure())
        attach(*view.metal(), window);
    std::optional<GuestWork> guest;
    if (!view.failure())
        beGuest(view, window, saver.share, guest);
    showUntilEnd(view, window, signals, speaker, saver.share, guest);
    if (window.hasLostDisplay())
        remarked("The connection to the display broke.");
    signals.answer();
    endSoon(speaker.hasSpoken() ? 1 : 0); // the device may work for longer
}

} // namespace tarnwick
