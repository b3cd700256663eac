// Private to this folder: encodes a movie as stretches that know nothing of each other.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>

namespace tarnwick {

// A session for each stretch. An encoder that looks ahead has some forty frames left to do when a
// stretch ends, a minute's work for large ones: where that is to take longer than `patience`, it
// does them while the next session takes its first frames, so that the queue before it moves on.
// Otherwise it does them first, since two sessions take twice the memory. Packets are the same, in
// their order.
class StretchEncoder : public VideoEncoder {
  public:
    static constexpr std::chrono::seconds usualPatience{10};

    // Throws MovieError.
    explicit StretchEncoder(const VideoSettings& settings,
                            std::chrono::duration<double> patience = usualPatience);
    ~StretchEncoder() override; // waits for a frame that is being encoded at most

    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                const VideoPacketSink& sink) override;
    void finish(const VideoPacketSink& sink) override;
    std::vector<std::byte> configuration() const override { return session->configuration(); }
    std::int64_t delay() const override { return session->delay(); }

  private:
    void beginNext(const VideoPacketSink& sink);
    std::chrono::duration<double> timeToFinish() const;
    void drain(VideoEncoder& old);
    void giveDrained(const VideoPacketSink& sink);
    void awaitDrained(const VideoPacketSink& sink);
    VideoPacketSink behindTheDrained(const VideoPacketSink& sink);

    const VideoSettings settings;
    const std::chrono::duration<double> patience;
    std::unique_ptr<VideoEncoder> session;
    std::int64_t taken = 0;                        // frames, by this session
    std::int64_t given = 0;                        // packets, by this session
    std::chrono::duration<double> encodingTime{0}; // that this session took for them
    std::mutex mutex;
    std::vector<VideoPacket> drained; // by the old session, not given yet; under the mutex
    std::vector<VideoPacket> waiting; // the new session's, behind those
    std::atomic<bool> stopped = false;
    std::future<void> draining; // valid while the old session is at work; goes first
};

} // namespace tarnwick
