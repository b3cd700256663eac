#include "saver/WindowHost.h"

#include "TarnwickBase/EndSignals.h"
#include "TarnwickRender/Targets/FrameClock.h"
#include "saver/HostError.h"
#include "TarnwickRender/Targets/WindowTarget.h"

#include <algorithm>
#include <array>
#include <poll.h>

namespace tarnwick {
namespace {

// Seconds. The drivers read the connection too and may receive our events; the descriptor is not
// readable then.
constexpr double longestWait = 0.1;
// Seconds. Frames that began before a failure may be shown over the failure screen.
constexpr double longestStale = 1;

Rectangle frameOf(const HostWindow& window) {
    return {0, 0, static_cast<double>(window.size().width),
            static_cast<double>(window.size().height)};
}

void attach(MTKView& metal, const HostWindow& window) {
    auto layer = metal.device()->newLayer(window.display(), window.window());
    if (!layer)
        throw HostError("The device " + metal.device()->info().name +
                        " cannot draw into this window.");
    metal.setTarget(std::make_unique<WindowTarget>(*metal.device(), std::move(layer)));
}

void showBackground(const TarnwickSaverView& view, HostWindow& window) {
    Picture picture = blackPicture(window.size());
    view.drawRect(picture);
    window.show(picture);
}

// Waits until there is something to read, or `seconds` have passed.
void wait(const HostWindow& window, const HeldSignals& signals, double seconds) {
    std::array<pollfd, 2> entries{{{.fd = window.connection(), .events = POLLIN, .revents = 0},
                                   {.fd = signals.descriptor(), .events = POLLIN, .revents = 0}}};
    const timespec time{.tv_sec = 0, .tv_nsec = static_cast<long>(seconds * 1e9)};
    ppoll(entries.data(), entries.size(), &time, nullptr);
}

// Draws a frame if one is due and there is room for it. Returns the seconds until the next step.
double drawWhenDue(MTKView& metal, FrameClock& frames) {
    if (!metal.waitForRoom(longestWait))
        return 0;
    const double now = currentMediaTime();
    const double left = frames.secondsUntilDue(now);
    if (left > 0)
        return std::min(left, longestWait);
    frames.begin(now);
    metal.draw();
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

void showUntilEnd(TarnwickSaverView& view, HostWindow& window, const HeldSignals& signals,
                  Speaker& speaker) {
    FrameClock frames(view.metal() != nullptr ? view.metal()->preferredFramesPerSecond : 1);
    double shown = 0; // time of the background, in seconds of the host clock
    bool isBackgroundStale = true;
    while (!signals.arrived()) {
        const HostWindow::News news = window.readNews();
        if (window.isGone())
            return;
        if (news.resized)
            view.setFrame(frameOf(window));
        view.judgeFrames();
        MTKView* const metal = view.metal();
        isBackgroundStale |= news.exposed || news.resized ||
                             (view.mayHaveDrawn() && currentMediaTime() - shown > longestStale);
        if (metal == nullptr && isBackgroundStale && window.isVisible()) {
            showBackground(view, window);
            isBackgroundStale = false;
            shown = currentMediaTime();
        }
        const bool draws = metal != nullptr && window.isVisible();
        const double left = draws ? drawWhenDue(*metal, frames) : longestWait;
        speaker.say(view.failure() ? view.failure() : view.absence());
        if (left > 0)
            wait(window, signals, left);
    }
}

} // namespace

void showInWindow(const Bundle& bundle, ScreenKind kind, const WindowChoice& choice,
                  const std::function<void(const std::string&)>& failed,
                  const std::function<void(const std::string&)>& remarked) {
    HeldSignals signals;
    HostWindow window(choice);
    const ScreenKind shown = window.isPreview() ? ScreenKind::preview : kind;
    TarnwickSaverView view(frameOf(window), shown,
                           bundle); // after its window, so that it is destroyed first
    window.setTitle(view.settings().name);
    Speaker speaker(failed);
    for (const std::string& remark : view.settingsRemarks())
        remarked(remark);
    speaker.say(view.failure());
    if (!view.failure())
        attach(*view.metal(), window);
    showUntilEnd(view, window, signals, speaker);
    signals.answer();
    endSoon(speaker.hasSpoken() ? 1 : 0); // the device may work for longer
}

} // namespace tarnwick
