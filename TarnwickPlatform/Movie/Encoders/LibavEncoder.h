// Private to this folder: one of libavcodec's encoders.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"
#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <string>

namespace tarnwick {

class LibavEncoder : public VideoEncoder {
  public:
    // The encoder of the codec's row, with libavcodec's options, "name=value:...". Throws
    // MovieError.
    LibavEncoder(const VideoSettings& settings, const std::string& options);

    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                const VideoPacketSink& sink) override;
    // As `encode`, but the caller chooses how the picture is encoded. For libx265 with the option
    // forced-idr=1, which makes an intra picture a key frame.
    void encodeAs(PictureKind kind, std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                  const VideoPacketSink& sink);
    void finish(const VideoPacketSink& sink) override;
    std::vector<std::byte> configuration() const override;
    std::int64_t delay() const override;

  private:
    void describe(const VideoSettings& settings);
    void send(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame, AVPictureType type,
              const VideoPacketSink& sink);
    void drain(const VideoPacketSink& sink);

    LibavOwner<AVCodecContext> context;
    std::int64_t firstFrame = -1; // sessions count from 0, so that they are alike wherever they lie
};

// An encoder of kind `plain`, with the options of the codec's row. Throws MovieError.
std::unique_ptr<VideoEncoder> makeLibavEncoder(const VideoSettings& settings);

// The option of the codec's row for the settings' speed, a colon behind it; may be empty.
std::string speedOption(const VideoSettings& settings);

} // namespace tarnwick
