#include "TarnwickPlatform/Movie/Encoders/StretchEncoder.h"

#include "TarnwickBase/FreedMemory.h"
#include "TarnwickPlatform/Movie/Encoders/EncoderChoice.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <utility>

namespace tarnwick {

StretchEncoder::StretchEncoder(const VideoSettings& settings,
                               std::chrono::duration<double> patience)
    : settings(settings), patience(patience), session(makeVideoEncoder(settings)) {}

StretchEncoder::~StretchEncoder() {
    stopped = true;
}

// Runs on its own thread.
void StretchEncoder::drain(VideoEncoder& old) {
    old.finish([this](VideoPacket packet) {
        if (stopped)
            throw MovieError("The encoder was stopped.");
        const std::lock_guard lock(mutex);
        drained.push_back(std::move(packet));
    });
}

void StretchEncoder::beginNext(const VideoPacketSink& sink) {
    awaitDrained(sink);
    if (timeToFinish() <= patience) {
        session->finish(sink);
        session.reset(); // before the next session allocates
        giveFreedMemoryBack();
        session = makeVideoEncoder(settings);
    } else {
        auto next = makeVideoEncoder(settings);
        std::shared_ptr<VideoEncoder> old = std::exchange(session, std::move(next));
        draining = std::async(std::launch::async, [this, old] { drain(*old); });
    }
    taken = given = 0;
    encodingTime = {};
}

// Estimated from the mean time of this session's frames.
std::chrono::duration<double> StretchEncoder::timeToFinish() const {
    return encodingTime / static_cast<double>(taken) * static_cast<double>(taken - given);
}

void StretchEncoder::giveDrained(const VideoPacketSink& sink) {
    std::vector<VideoPacket> ready;
    {
        const std::lock_guard lock(mutex);
        ready.swap(drained);
    }
    for (VideoPacket& packet : ready)
        sink(std::move(packet));
}

void StretchEncoder::awaitDrained(const VideoPacketSink& sink) {
    if (!draining.valid())
        return;
    draining.get();
    giveFreedMemoryBack();
    giveDrained(sink);
    for (VideoPacket& packet : std::exchange(waiting, {}))
        sink(std::move(packet));
}

VideoPacketSink StretchEncoder::behindTheDrained(const VideoPacketSink& sink) {
    return [this, &sink](VideoPacket packet) {
        ++given;
        if (draining.valid())
            waiting.push_back(std::move(packet));
        else
            sink(std::move(packet));
    };
}

void StretchEncoder::encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                            const VideoPacketSink& sink) {
    if (taken > 0 && !videoCodecRow(settings.codec).isIntraOnly &&
        frame % stretchLength(settings) == 0)
        beginNext(sink);
    if (draining.valid())
        giveDrained(sink);
    if (draining.valid() && draining.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        awaitDrained(sink);
    const auto begin = std::chrono::steady_clock::now();
    session->encode(std::move(picture), frame, behindTheDrained(sink));
    encodingTime += std::chrono::steady_clock::now() - begin;
    ++taken;
}

void StretchEncoder::finish(const VideoPacketSink& sink) {
    awaitDrained(sink);
    session->finish(sink);
}

} // namespace tarnwick
