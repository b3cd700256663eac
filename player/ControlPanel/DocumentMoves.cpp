#include "player/ControlPanel/DocumentMoves.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int gesturePause = 1000;  // milliseconds without values that end a change
constexpr double keyInterval = 0.1; // seconds between the keys that are written

constexpr const char* change = "Play parameters";
constexpr const char* gesture = "live control";

} // namespace

DocumentMoves::DocumentMoves(QObject* parent) : QObject(parent) {
    pause_.setSingleShot(true);
    pause_.setInterval(gesturePause);
    connect(&pause_, &QTimer::timeout, this, &DocumentMoves::endGesture);
}

void DocumentMoves::apply(OpenDocument& document, const ParamValues& values) {
    Settings next = document.document().settings();
    ParamValues held;
    const double time = std::round(document.time() / keyInterval) * keyInterval;
    for (const auto& [name, value] : values)
        if (writesKeys_)
            next.keys.set(name, time, value);
        else if (!next.keys.keys(name).empty())
            held[name] = value;
        else
            next.values[name] = value;
    if (!held.empty())
        document.hold(held);
    if (next != document.document().settings())
        document.setSettings(std::move(next), change, gesture);
    moved_ = &document;
    pause_.start();
}

void DocumentMoves::endGesture() {
    pause_.stop();
    if (moved_ != nullptr)
        moved_->endGesture();
    moved_ = nullptr;
}

void apply(OpenDocument& document, const TransportMove& move) {
    const Transport& transport = document.transport();
    const double now = currentMediaTime();
    // A button without a number is one frame.
    const auto frames = static_cast<std::int64_t>(std::clamp(move.number, 1.0, 1e9));
    using enum TransportAction;
    switch (move.action) {
    case toggle:
        return document.setTransport(transport.isPlaying ? transport.paused(now)
                                                         : transport.played(now));
    case play:
        return document.setTransport(transport.played(now));
    case pause:
        return document.setTransport(transport.paused(now));
    case restart:
        return document.setTransport(transport.sought(0, now));
    case stepForward:
        return document.setTransport(transport.stepped(frames, now));
    case stepBack:
        return document.setTransport(transport.stepped(-frames, now));
    case speed:
        return document.setTransport(transport.withSpeed(move.number, now));
    case time:
        return document.setTransport(transport.sought(move.number, now));
    }
}

} // namespace tarnwick::player
