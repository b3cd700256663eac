#include "TarnwickPlatform/Movie/Encoders/HEVCAlphaEncoder.h"

#include "TarnwickPlatform/Movie/Encoders/HEVCLayerPairs.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <limits>
#include <map>
#include <string>

namespace tarnwick {
namespace {

constexpr double coarsestQuantiser = 51;
constexpr std::size_t alphaPlane = 3;

// libx265 takes its rate in thousands of bits a second.
constexpr std::int64_t leastBitRate = 1000;

// The settings of one of the two encoders, which encode plain HEVC.
VideoSettings withShare(VideoSettings settings, double share) {
    settings.codec = VideoCodec::hevc;
    const double rate = static_cast<double>(settings.averageBitRate) * share;
    settings.averageBitRate = std::max<std::int64_t>(std::llround(rate), leastBitRate);
    return settings;
}

// No scene cuts, and three B-frames wherever they fit. libx265 still puts a P-frame in the place of
// a B-frame for some content: with cutree on, it looks for scene cuts in the three pictures before
// a P-frame although scenecut=0 (fades, cuts and flat pictures have them). So colour decides and
// alpha follows.
std::string commonOptions(const VideoSettings& settings) {
    const std::string interval = std::to_string(settings.maxKeyFrameInterval);
    return speedOption(settings) + "profile=main:forced-idr=1:x265-params=" +
           "frame-threads=1\\:pools=16\\:log-level=none\\:info=0\\:aud=0\\:hrd=0" +
           "\\:bframes=3\\:b-adapt=0\\:scenecut=0\\:open-gop=0\\:keyint=" + interval +
           "\\:min-keyint=" + interval;
}

std::string colourOptions(const VideoSettings& settings) {
    return commonOptions(settings);
}

// Tuned for PSNR, since psychovisual tuning has no meaning for alpha. cutree needs the lookahead's
// decisions, which libx265 does not make if it is given the kinds of pictures.
std::string alphaOptions(const VideoSettings& settings) {
    const long finest = std::lround(coarsestQuantiser * (1 - settings.alphaQuality));
    return "tune=psnr:qmin=" + std::to_string(finest) + ":" + commonOptions(settings) +
           "\\:cutree=0\\:rc-lookahead=5";
}

hevc::ByteView viewOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

std::unique_ptr<LibavEncoder> colourEncoder(const VideoSettings& settings) {
    return std::make_unique<LibavEncoder>(
        withShare(settings, videoCodecRow(settings.codec).colourShare), colourOptions(settings));
}

std::unique_ptr<LibavEncoder> alphaEncoder(const VideoSettings& settings) {
    return std::make_unique<LibavEncoder>(
        withShare(settings, videoCodecRow(settings.codec).alphaShare), alphaOptions(settings));
}

class HEVCAlphaEncoder : public VideoEncoder {
  public:
    explicit HEVCAlphaEncoder(const VideoSettings& settings);

    void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                const VideoPacketSink& sink) override;
    void finish(const VideoPacketSink& sink) override;
    std::vector<std::byte> configuration() const override { return pairs.configuration(); }
    std::int64_t delay() const override { return colour->delay(); }

  private:
    struct WaitingAlpha {
        std::shared_ptr<const PixelBuffer> picture;
        std::int64_t frame = 0;
    };

    std::shared_ptr<const PixelBuffer> alphaPicture(const PixelBuffer& picture);
    void takeColour(VideoPacket packet, const VideoPacketSink& sink);
    void encodeAlpha();

    std::unique_ptr<LibavEncoder> colour;
    std::unique_ptr<LibavEncoder> alpha;
    hevc::LayerPairs pairs;
    PixelBufferPool alphaPictures; // at most as many as colour looks ahead
    std::deque<WaitingAlpha> waiting;
    std::map<std::int64_t, PictureKind> kinds; // of the frames that colour has encoded
};

HEVCAlphaEncoder::HEVCAlphaEncoder(const VideoSettings& settings)
    : colour(colourEncoder(settings)), alpha(alphaEncoder(settings)),
      pairs(hevc::LayeredStream(viewOf(colour->configuration()), viewOf(alpha->configuration()),
                                settings.alpha),
            {.colour = [settings] { return colourEncoder(settings); },
             .alpha = [settings] { return alphaEncoder(settings); }}),
      alphaPictures(PixelFormat::ycbcr420, settings.width, settings.height,
                    std::numeric_limits<std::int64_t>::max()) {}

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
    waiting.push_back({alphaPicture(*picture), frame});
    colour->encode(std::move(picture), frame,
                   [&](VideoPacket packet) { takeColour(std::move(packet), sink); });
}

void HEVCAlphaEncoder::finish(const VideoPacketSink& sink) {
    colour->finish([&](VideoPacket packet) { takeColour(std::move(packet), sink); });
    alpha->finish([&](VideoPacket packet) {
        pairs.putAlpha(std::move(packet));
        pairs.give(sink);
    });
    pairs.finish(sink);
}

void HEVCAlphaEncoder::takeColour(VideoPacket packet, const VideoPacketSink& sink) {
    const bool isAlone = packet.kind == PictureKind::intra && !packet.isKeyFrame;
    kinds[packet.frame] = isAlone ? PictureKind::predicted : packet.kind;
    pairs.putColour(std::move(packet));
    encodeAlpha();
    pairs.give(sink);
}

// Encodes the waiting pictures whose kind is known.
void HEVCAlphaEncoder::encodeAlpha() {
    while (!waiting.empty()) {
        const auto known = kinds.extract(waiting.front().frame);
        if (!known)
            return;
        const WaitingAlpha next = std::move(waiting.front());
        waiting.pop_front();
        alpha->encodeAs(known.mapped(), next.picture, next.frame,
                        [this](VideoPacket packet) { pairs.putAlpha(std::move(packet)); });
    }
}

} // namespace

std::unique_ptr<VideoEncoder> makeHEVCAlphaEncoder(const VideoSettings& settings) {
    return std::make_unique<HEVCAlphaEncoder>(settings);
}

} // namespace tarnwick
