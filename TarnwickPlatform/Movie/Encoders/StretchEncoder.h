// Encodes a movie as stretches that do not depend on each other.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>

namespace tarnwick {

// Has a session for each stretch. An encoder that looks ahead has about forty frames left at the
// end of a stretch, a minute's work for large frames. If that is estimated to take longer than
// `patience`, the old session encodes them on another thread while the next session takes its first
// frames, so that the queue before it moves on. Otherwise they are encoded first, since two
// sessions take twice the memory. The packets and their order are the same.
class StretchEncoder : public VideoEncoder {
  public:
    static constexpr std::chrono::seconds usualPatience{10};

    // Throws MovieError.
    explicit StretchEncoder(const VideoSettings& settings,
                            std::chrono::duration<double> patience = usualPatience);
    ~StretchEncoder() override; // blocks until the frame under way is encoded

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
    std::int64_t taken = 0;                        // frames, to this session
    std::int64_t given = 0;                        // packets, by this session
    std::chrono::duration<double> encodingTime{0}; // of this session, for them
    std::mutex mutex;
    std::vector<VideoPacket> drained; // of the old session, not given yet; guarded by the mutex
    std::vector<VideoPacket> waiting; // of the new session, after those
    std::atomic<bool> stopped = false;
    std::future<void> draining; // valid while the old session works; destroyed first
};

} // namespace tarnwick
