#include "TarnwickPlatform/Movie/HEVCAlphaEncoder.h"

#include "TarnwickPlatform/Movie/HEVCLayeredStream.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <string>

namespace tarnwick {
namespace {

constexpr double colourShare = 0.95; // of the average bit rate
constexpr double alphaShare = 0.10;
constexpr double coarsestQuantiser = 51;
constexpr std::size_t alphaPlane = 3;

// libx265 counts in thousands of bits a second.
constexpr std::int64_t leastBitRate = 1000;

VideoSettings withShare(VideoSettings settings, double share) {
    const double rate = static_cast<double>(settings.averageBitRate) * share;
    settings.averageBitRate = std::max<std::int64_t>(std::llround(rate), leastBitRate);
    return settings;
}

// Frame types by count alone: a key frame every interval, three B-frames wherever they fit.
std::string lockstepOptions(const VideoSettings& settings) {
    const std::string interval = std::to_string(settings.maxKeyFrameInterval);
    return std::string(
               "x265-params=frame-threads=1\\:pools=16\\:log-level=none\\:info=0\\:aud=0\\:hrd=0") +
           "\\:bframes=3\\:b-adapt=0\\:scenecut=0\\:open-gop=0\\:keyint=" + interval +
           "\\:min-keyint=" + interval;
}

std::string colourOptions(const VideoSettings& settings) {
    return "preset=medium:profile=main:" + lockstepOptions(settings);
}

// Tuned for the numbers, since what pleases the eye in a picture has no meaning in alpha.
std::string alphaOptions(const VideoSettings& settings) {
    const long finest = std::lround(coarsestQuantiser * (1 - settings.alphaQuality));
    return "preset=medium:profile=main:tune=psnr:qmin=" + std::to_string(finest) + ":" +
           lockstepOptions(settings);
}

hevc::ByteView viewOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

std::vector<std::byte> bytesOf(hevc::ByteView view) {
    const auto* bytes = reinterpret_cast<const std::byte*>(view.data());
    return {bytes, bytes + view.size()};
}

class HEVCAlphaEncoder : public VideoEncoder {
  public:
    explicit HEVCAlphaEncoder(const VideoSettings& settings);

    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                const VideoPacketSink& sink) override;
    void finish(const VideoPacketSink& sink) override;
    std::vector<std::byte> configuration() const override {
        return bytesOf(stream.configuration());
    }
    std::int64_t delay() const override { return colour->delay(); }

  private:
    std::shared_ptr<const PixelBuffer> alphaPicture(const PixelBuffer& picture);
    void pairUp(const VideoPacketSink& sink);

    std::unique_ptr<VideoEncoder> colour;
    std::unique_ptr<VideoEncoder> alpha;
    hevc::LayeredStream stream;
    PixelBufferPool alphaPictures;
    std::deque<VideoPacket> colourPackets, alphaPackets; // that wait for their partners
};

// An encoder lets go of a picture when it takes the next one at the latest.
constexpr std::int64_t picturesInEncoder = 3;

HEVCAlphaEncoder::HEVCAlphaEncoder(const VideoSettings& settings)
    : colour(makeHEVCEncoder(withShare(settings, colourShare), colourOptions(settings))),
      alpha(makeHEVCEncoder(withShare(settings, alphaShare), alphaOptions(settings))),
      stream(viewOf(colour->configuration()), viewOf(alpha->configuration()), settings.alpha),
      alphaPictures(PixelFormat::ycbcr420, settings.width, settings.height, picturesInEncoder) {}

std::shared_ptr<const PixelBuffer> HEVCAlphaEncoder::alphaPicture(const PixelBuffer& picture) {
    std::shared_ptr<PixelBuffer> made = alphaPictures.take();
    if (!made)
        throw MovieError("Cannot allocate memory");
    const PixelLayout::Plane& from = picture.layout().planes[alphaPlane];
    const auto& planes = made->layout().planes;
    for (std::int64_t row = 0; row < from.height; ++row)
        std::memcpy(made->plane(0) + row * planes[0].bytesPerRow,
                    picture.plane(alphaPlane) + row * from.bytesPerRow,
                    static_cast<std::size_t>(from.width));
    for (const std::size_t chroma : {1, 2})
        std::memset(made->plane(chroma), 128,
                    static_cast<std::size_t>(planes[chroma].bytesPerRow * planes[chroma].height));
    return made;
}

void HEVCAlphaEncoder::encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                              const VideoPacketSink& sink) {
    alpha->encode(alphaPicture(*picture), frame,
                  [this](VideoPacket packet) { alphaPackets.push_back(std::move(packet)); });
    colour->encode(std::move(picture), frame,
                   [this](VideoPacket packet) { colourPackets.push_back(std::move(packet)); });
    pairUp(sink);
}

void HEVCAlphaEncoder::finish(const VideoPacketSink& sink) {
    alpha->finish([this](VideoPacket packet) { alphaPackets.push_back(std::move(packet)); });
    colour->finish([this](VideoPacket packet) { colourPackets.push_back(std::move(packet)); });
    pairUp(sink);
    if (!colourPackets.empty() || !alphaPackets.empty())
        throw MovieError("The HEVC encoders of colour and alpha disagree about the pictures.");
}

void HEVCAlphaEncoder::pairUp(const VideoPacketSink& sink) {
    while (!colourPackets.empty() && !alphaPackets.empty()) {
        const VideoPacket& first = colourPackets.front();
        const VideoPacket& second = alphaPackets.front();
        if (first.frame != second.frame || first.isKeyFrame != second.isKeyFrame)
            throw MovieError("The HEVC encoders of colour and alpha disagree about the pictures.");
        sink({.bytes = bytesOf(stream.accessUnit(viewOf(first.bytes), viewOf(second.bytes))),
              .frame = first.frame,
              .isKeyFrame = first.isKeyFrame});
        colourPackets.pop_front();
        alphaPackets.pop_front();
    }
}

} // namespace

std::unique_ptr<VideoEncoder> makeHEVCAlphaEncoder(const VideoSettings& settings) {
    return std::make_unique<HEVCAlphaEncoder>(settings);
}

} // namespace tarnwick
