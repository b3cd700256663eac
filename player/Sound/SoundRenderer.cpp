#include "player/Sound/SoundRenderer.h"

#include "TarnwickPlatform/Sound/SoundOutput.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick::player {
namespace {

constexpr std::int64_t shortestPart = soundRate / 16; // frames rendered at once
constexpr double longestPart = 12;                    // shortest parts
// Seconds. A server that was late takes the length of its buffer at once.
constexpr double shortestAhead = 0.15 + SoundOutput::serverBuffer, longestAhead = 1.5;
// Between the frame that the device takes next and the first that may still be replaced: two of its
// calls.
constexpr std::int64_t safety = 1024;

constexpr double noticedDrift = 0.008, corrected = 0.001; // seconds
constexpr double farOff = 0.04;                           // seconds; more than that is a jump
constexpr double correction = 0.001;   // of the speed, while a drift is corrected: 1.7 cents
constexpr double forgetting = 0.95;    // of the slowest part, in each part
constexpr double shortestLoop = 0.01;  // seconds that are heard
constexpr double noticedSlowness = 1;  // seconds; slower parts leave gaps
constexpr double retryInterval = 0.02; // seconds
constexpr double exactStep = 1.0 / soundRate;

double onGrid(double time) {
    return std::round(time * soundRate) / soundRate;
}

// Whether playing with this transport wraps at the end, or backwards at the start, of its loop.
bool loops(const Transport& transport) {
    return transport.loop && (transport.speed > 0 ? transport.time < transport.loop->end
                                                  : transport.time > transport.loop->start);
}

} // namespace

bool SoundRecord::isHeard() const {
    const bool isTooShort =
        transport.loop && transport.loop->end - transport.loop->start < shortestLoop;
    return (own || file) && transport.isPlaying && transport.speed != 0 &&
           std::abs(transport.speed) <= fastestHeard && !(isTooShort && loops(transport));
}

SoundRenderer::SoundRenderer(SampleRing& ring, const SoundClock& clock,
                             std::function<double()> host)
    : ring_(ring), clock_(clock), host_(std::move(host)) {}

void SoundRenderer::show(SoundRecord record) {
    if (record == record_)
        return;
    record_ = std::move(record);
    isChanged_ = true;
}

SoundRenderer::Playhead SoundRenderer::Playhead::after(std::int64_t frames) const {
    const double moved = time + static_cast<double>(frames) * step;
    return {step == exactStep && time == onGrid(time) ? onGrid(moved) : moved, step};
}

bool SoundRenderer::step() {
    const std::int64_t written = ring_.written(), taken = ring_.taken();
    if (taken == 0)
        return false; // the clock does not run yet
    const bool isLate = written < taken;
    const bool isWrong = isIncomplete_ || std::abs(drift()) > farOff;
    if (isChanged_ || isLate || (isWrong && host_() >= retry_))
        return jump();
    if (written - taken >= ahead())
        return false;
    correctDrift();
    extend();
    return true;
}

// Where the transport is when the frame is heard.
SoundRenderer::Playhead SoundRenderer::playheadAt(std::int64_t number) const {
    const Transport& transport = record_.transport;
    const double time = transport.timeAt(clock_.hostOf(number));
    const bool isAtStart = transport.speed < 0 && time <= 0 && !loops(transport);
    const double step = record_.isHeard() && !isAtStart ? transport.speed * exactStep : 0;
    return {step == exactStep ? onGrid(time) : time, step};
}

// Whether a sound that goes on from `from` is close enough to `to`.
bool SoundRenderer::continues(const Playhead& from, const Playhead& to) const {
    return from.step != 0 && to.step != 0 &&
           std::abs(from.step / to.step - 1) <= correction * 1.5 &&
           std::abs(from.time - to.time) < farOff / 2;
}

// Seconds of the host by which the sound is ahead of the transport.
double SoundRenderer::drift() const {
    if (playhead_.step == 0)
        return 0;
    const Transport& transport = record_.transport;
    double apart = playhead_.time - transport.timeAt(clock_.hostOf(ring_.written()));
    if (loops(transport))
        apart = std::remainder(apart, transport.loop->end - transport.loop->start);
    return apart / transport.speed;
}

// The device's clock and the host's differ a little. The sound is played a little slower or faster
// until both agree, which nobody hears.
void SoundRenderer::correctDrift() {
    const double apart = drift();
    if (std::abs(apart) > noticedDrift)
        isCorrecting_ = true;
    else if (std::abs(apart) < corrected)
        isCorrecting_ = false;
    if (playhead_.step == 0)
        return;
    const double exact = record_.transport.speed * exactStep;
    playhead_.step = isCorrecting_ ? exact * (apart > 0 ? 1 - correction : 1 + correction) : exact;
}

// Replaces the frames that were rendered ahead.
bool SoundRenderer::jump() {
    const auto renderTime = static_cast<std::int64_t>(1.25 * slowest_ * soundRate);
    const std::int64_t from = ring_.taken() + safety + renderTime, written = ring_.written();
    Playhead next = playheadAt(from);
    const Playhead old = playhead_.after(from - written);
    const bool isContinued = from < written && continues(old, next);
    if (isContinued)
        next = {old.time, old.step};
    const std::vector<SoundFrame> frames =
        render(next, std::clamp<std::int64_t>(framesToWrap(next), fade, partLength(next)));
    // The device may have taken some of them meanwhile.
    const std::int64_t late = std::max<std::int64_t>(ring_.taken() + safety / 2 - from, 0);
    if (late + fade > std::ssize(frames) ||
        !ring_.replace(from + late, std::span(frames).subspan(static_cast<std::size_t>(late)),
                       fade))
        return true;
    playhead_ = next.after(std::ssize(frames));
    isChanged_ = false;
    isCorrecting_ = isCorrecting_ && isContinued;
    if (!isContinued)
        lastJump_ = from;
    return true;
}

// A fade is rendered whole, also beyond the end of a loop; the next part begins that much later.
void SoundRenderer::extend() {
    const Playhead old = playhead_;
    if (framesToWrap(old) <= 0)
        playhead_ = wrapped(old);
    else if (old.step == exactStep)
        playhead_.time = onGrid(old.time); // after a drift
    const bool isJoint = playhead_.time != old.time || playhead_.step != old.step;
    const std::int64_t count = std::clamp<std::int64_t>(framesToWrap(playhead_), isJoint ? fade : 1,
                                                        partLength(playhead_));
    std::vector<SoundFrame> frames = render(playhead_, count);
    if (isJoint) {
        const auto tail = render(old, fade);
        for (std::size_t at = 0; at < tail.size(); ++at)
            frames[at] = mixed(tail[at], frames[at], static_cast<float>(at) / fade);
    }
    ring_.append(frames);
    playhead_ = playhead_.after(count);
}

// Up to the end of the loop; backwards, to its start or to time 0.
std::int64_t SoundRenderer::framesToWrap(const Playhead& playhead) const {
    const Transport& transport = record_.transport;
    if (playhead.step == 0 || (playhead.step > 0 && !loops(transport)))
        return std::numeric_limits<std::int64_t>::max();
    constexpr double rounding = 1e-6; // frames
    if (playhead.step > 0)
        return static_cast<std::int64_t>(
            std::ceil((transport.loop->end - playhead.time) / playhead.step - rounding));
    const double start = loops(transport) ? transport.loop->start : 0;
    return static_cast<std::int64_t>(
        std::floor((start - playhead.time) / playhead.step + rounding) + 1);
}

// The playhead that reached an end of the loop, at the other one. At time 0 it becomes silent.
SoundRenderer::Playhead SoundRenderer::wrapped(const Playhead& playhead) const {
    if (!loops(record_.transport))
        return {0, 0};
    const LoopRange& loop = *record_.transport.loop;
    const double length = loop.end - loop.start;
    double within = std::fmod(playhead.time - loop.start, length);
    if (within < 0)
        within += length;
    const double time = loop.start + within;
    return {playhead.step == exactStep ? onGrid(time) : time, playhead.step};
}

// Longer where rendering waits for slow frames of the picture.
std::int64_t SoundRenderer::partLength(const Playhead& playhead) const {
    const double parts = std::ceil(2 * slowest_ * soundRate / static_cast<double>(shortestPart));
    const auto length =
        static_cast<std::int64_t>(std::clamp(parts, 1.0, longestPart)) * shortestPart;
    return playhead.step == 0 ? shortestPart : length;
}

std::int64_t SoundRenderer::ahead() const {
    const double seconds = std::clamp(shortestAhead + 3 * slowest_, shortestAhead, longestAhead);
    return static_cast<std::int64_t>(seconds * soundRate);
}

std::vector<SoundFrame> SoundRenderer::render(const Playhead& playhead, std::int64_t count) {
    std::vector<SoundFrame> frames(static_cast<std::size_t>(count));
    if (playhead.step == 0) {
        isIncomplete_ = false;
        return frames;
    }
    const double begin = host_();
    const bool hasOwn = renderPair(record_.own.get(), playhead, count, &SoundFrame::own, frames);
    const bool hasFile = renderPair(record_.file.get(), playhead, count, &SoundFrame::file, frames);
    const double now = host_();
    slowest_ = std::clamp(now - begin, slowest_ * forgetting, noticedSlowness);
    isIncomplete_ = !hasOwn || !hasFile;
    retry_ = now + retryInterval;
    return frames;
}

// Above the normal speed each frame is the mean of several, so that high tones do not come back as
// low ones. False if the sound is not there yet.
bool SoundRenderer::renderPair(TimedSound* sound, const Playhead& playhead, std::int64_t count,
                               std::array<float, 2> SoundFrame::*pair,
                               std::vector<SoundFrame>& frames) {
    if (sound == nullptr)
        return true;
    const double speed = std::abs(playhead.step) * soundRate;
    const auto together = static_cast<std::int64_t>(std::ceil(speed * (1 - 2 * correction)));
    const std::int64_t each = std::max<std::int64_t>(together, 1);
    std::vector<float> stereo(static_cast<std::size_t>(2 * count * each));
    const double rate =
        playhead.step == exactStep ? soundRate : static_cast<double>(each) / playhead.step;
    if (!sound->samples(playhead.time, rate, stereo))
        return false;
    std::size_t at = 0;
    for (SoundFrame& frame : frames)
        for (std::int64_t part = 0; part < each; ++part)
            for (float& side : frame.*pair)
                side += stereo[at++] / static_cast<float>(each);
    return true;
}

} // namespace tarnwick::player
