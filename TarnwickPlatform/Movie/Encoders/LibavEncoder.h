// An encoder of libavcodec.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"
#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <string>

namespace tarnwick {

class LibavEncoder : public VideoEncoder {
  public:
    // Opens the encoder of the codec's row with libavcodec's options, "name=value:...". Throws
    // MovieError.
    LibavEncoder(const VideoSettings& settings, const std::string& options);

    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                const VideoPacketSink& sink) override;
    // As `encode`, but the caller chooses the kind of the picture. For libx265 with the option
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
    std::int64_t firstFrame = -1; // of the session; libavcodec gets numbers from 0 on, so that
                                  // packets do not depend on it
};

// An encoder of kind `plain`, with the options of the codec's row. Throws MovieError.
std::unique_ptr<VideoEncoder> makeLibavEncoder(const VideoSettings& settings);

// The option of the codec's row for the settings' speed, with a colon after it, or empty.
std::string speedOption(const VideoSettings& settings);

} // namespace tarnwick
