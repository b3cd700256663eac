// Private to this folder: one of libavcodec's encoders.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"
#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <string>

namespace tarnwick {

class LibavEncoder : public VideoEncoder {
  public:
    struct Library {
        const char* encoder = ""; // its name
        AVPixelFormat format = AV_PIX_FMT_NONE;
        std::string options{}; // in libavutil's form, "name=value:..."
    };
    // Throws MovieError.
    LibavEncoder(const VideoSettings& settings, const Library& library);

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

// The encoder of every codec but HEVC with alpha. Throws MovieError.
std::unique_ptr<VideoEncoder> makeLibavEncoder(const VideoSettings& settings);

// The first of the options of libx264 and libx265, a colon behind it.
std::string presetOption(EncodingSpeed speed);

// HEVC by libx265 with options of the caller's. Takes the first three planes of ycbcr420 or
// ycbcra420. Throws MovieError.
std::unique_ptr<LibavEncoder> makeHEVCEncoder(const VideoSettings& settings,
                                              const std::string& options);

} // namespace tarnwick
