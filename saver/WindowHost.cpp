#include "saver/WindowHost.h"

#include "saver/EndSignals.h"
#include "saver/FrameClock.h"
#include "saver/HostError.h"
#include "saver/WindowTarget.h"

#include <algorithm>
#include <array>
#include <poll.h>

namespace tarnwick {
namespace {

// Seconds. The drivers read the connection too and may take in news of ours, of which the
// descriptor then says nothing.
constexpr double longestWait = 0.1;

Rectangle frameOf(const HostWindow& window) {
    return {0, 0, static_cast<double>(window.size().width),
            static_cast<double>(window.size().height)};
}

void attach(MTKView& metal, const HostWindow& window) {
    auto layer = metal.device()->newLayer(window.display(), window.window());
    if (!layer)
        throw HostError("The device " + metal.device()->info().name +
                        " cannot draw into this window.");
    metal.setTarget(std::make_unique<WindowTarget>(std::move(layer)));
}

void showBackground(const TarnwickSaverView& view, HostWindow& window) {
    Picture picture = blackPicture(window.size());
    view.drawRect(picture);
    window.show(picture);
}

// Until there is something to read, or `seconds` have passed.
void wait(const HostWindow& window, const EndSignals& signals, double seconds) {
    std::array<pollfd, 2> entries{{{.fd = window.connection(), .events = POLLIN, .revents = 0},
                                   {.fd = signals.descriptor(), .events = POLLIN, .revents = 0}}};
    const timespec time{.tv_sec = 0, .tv_nsec = static_cast<long>(seconds * 1e9)};
    ppoll(entries.data(), entries.size(), &time, nullptr);
}

// Draws a frame if one is due; gives the seconds until something is to be done again.
double drawWhenDue(MTKView& metal, FrameClock& frames) {
    const double now = currentMediaTime();
    const double left = frames.secondsUntilDue(now);
    if (left > 0)
        return std::min(left, longestWait);
    frames.begin(now);
    metal.draw();
    return 0;
}

// Says each sentence once, not with each frame.
class Speaker {
  public:
    explicit Speaker(const std::function<void(const std::string&)>& failed) : failed_(failed) {}

    void say(const std::optional<std::string>& sentence) {
        if (sentence && sentence != said_)
            failed_(*sentence);
        if (sentence)
            said_ = sentence;
    }

  private:
    const std::function<void(const std::string&)>& failed_;
    std::optional<std::string> said_;
};

void showUntilEnd(TarnwickSaverView& view, HostWindow& window, const EndSignals& signals,
                  Speaker& speaker) {
    MTKView* metal = view.metal();
    FrameClock frames(metal != nullptr ? metal->preferredFramesPerSecond : 1);
    bool isBackgroundStale = true;
    while (!signals.haveArrived()) {
        const HostWindow::News news = window.readNews();
        if (window.isGone())
            return;
        if (news.resized)
            view.setFrame(frameOf(window));
        isBackgroundStale |= news.exposed || news.resized;
        if (metal == nullptr && isBackgroundStale && window.isVisible()) {
            showBackground(view, window);
            isBackgroundStale = false;
        }
        const bool draws = metal != nullptr && window.isVisible();
        const double left = draws ? drawWhenDue(*metal, frames) : longestWait;
        speaker.say(view.absence());
        if (left > 0)
            wait(window, signals, left);
    }
}

} // namespace

void showInWindow(const Bundle& bundle, ScreenKind kind, const WindowChoice& choice,
                  const std::function<void(const std::string&)>& failed,
                  const std::function<void(const std::string&)>& remarked) {
    const EndSignals signals;
    HostWindow window(choice);
    TarnwickSaverView view(frameOf(window), kind, bundle); // after its window: it must go first
    window.setTitle(view.settings().name);
    Speaker speaker(failed);
    for (const std::string& remark : view.settingsRemarks())
        remarked(remark);
    speaker.say(view.failure());
    if (!view.failure())
        attach(*view.metal(), window);
    showUntilEnd(view, window, signals, speaker);
}

} // namespace tarnwick
