// The picture track of the writer of files, up to its packets.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"
#include "TarnwickPlatform/Movie/MovieInput.h"
#include "TarnwickPlatform/Movie/Writing/BoundedQueue.h"
#include "TarnwickPlatform/Movie/Writing/WriterState.h"

#include <atomic>

namespace tarnwick {

class FileVideoInput : public VideoInput {
  public:
    FileVideoInput(const VideoSettings& settings, WriterState& state);

    std::string_view mediaType() const override { return "vide"; }
    bool isReadyForMoreMediaData() const override {
        return begun && frames.hasRoom() && state.status() == MovieWriterStatus::writing;
    }
    void markAsFinished() override { frames.finish(); }
    PixelBufferPool* pixelBufferPool() override { return pool.get(); }
    bool append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) override;

    void makePool();
    void begin(std::int64_t frame);
    void abandon() {
        frames.abandon();
        pictures.abandon();
    }

    // The stages, each on its own thread. They return after the last frame. They throw MovieError.
    void convertFrames();
    void encodePictures(const VideoPacketSink& sink);

    const VideoSettings settings;
    std::unique_ptr<VideoEncoder> encoder;

  private:
    struct QueuedFrame {
        std::shared_ptr<const PixelBuffer> picture;
        std::int64_t frame = 0;
    };

    WriterState& state;
    std::unique_ptr<PixelBufferPool> pool;
    BoundedQueue<QueuedFrame> frames;
    BoundedQueue<QueuedFrame> pictures;
    std::atomic<bool> begun = false;
    std::int64_t nextFrame = 0;
};

} // namespace tarnwick
