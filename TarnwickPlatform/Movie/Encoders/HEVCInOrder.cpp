#include "TarnwickPlatform/Movie/Encoders/HEVCInOrder.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

namespace tarnwick::hevc {
namespace {

using PictureSink = std::function<void(std::shared_ptr<const PixelBuffer>, std::int64_t frame)>;

// Gives the pictures of a stream in display order.
class Decoder {
  public:
    explicit Decoder(const std::vector<std::byte>& parameterSets);

    void decode(const VideoPacket& packet, const PictureSink& sink);
    void finish(const PictureSink& sink);

  private:
    void drain(const PictureSink& sink);
    std::shared_ptr<const PixelBuffer> copied(const AVFrame& frame);

    LibavOwner<AVCodecContext> context;
    std::unique_ptr<PixelBufferPool> pool;
};

Decoder::Decoder(const std::vector<std::byte>& parameterSets) {
    catchLibavWords();
    const AVCodec* codec = libav().avcodec_find_decoder(AV_CODEC_ID_HEVC);
    if (!codec)
        throw MovieError("Decoder not found: hevc");
    context.reset(throwingWhenNull(libav().avcodec_alloc_context3(codec)));
    context->err_recognition = AV_EF_EXPLODE;
    context->extradata = throwingWhenNull(static_cast<std::uint8_t*>(
        libav().av_mallocz(parameterSets.size() + AV_INPUT_BUFFER_PADDING_SIZE)));
    std::memcpy(context->extradata, parameterSets.data(), parameterSets.size());
    context->extradata_size = static_cast<int>(parameterSets.size());
    throwingWhenNegative(libav().avcodec_open2(context.get(), codec, nullptr));
}

void Decoder::decode(const VideoPacket& packet, const PictureSink& sink) {
    catchLibavWords();
    LibavOwner<AVPacket> made(throwingWhenNull(libav().av_packet_alloc()));
    throwingWhenNegative(libav().av_new_packet(made.get(), static_cast<int>(packet.bytes.size())));
    std::memcpy(made->data, packet.bytes.data(), packet.bytes.size());
    made->pts = packet.frame;
    throwingWhenNegative(libav().avcodec_send_packet(context.get(), made.get()));
    drain(sink);
}

void Decoder::finish(const PictureSink& sink) {
    catchLibavWords();
    throwingWhenNegative(libav().avcodec_send_packet(context.get(), nullptr));
    drain(sink);
}

void Decoder::drain(const PictureSink& sink) {
    const LibavOwner<AVFrame> frame(throwingWhenNull(libav().av_frame_alloc()));
    for (;;) {
        const int received = libav().avcodec_receive_frame(context.get(), frame.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            return;
        throwingWhenNegative(received);
        sink(copied(*frame), frame->pts);
        libav().av_frame_unref(frame.get());
    }
}

std::shared_ptr<const PixelBuffer> Decoder::copied(const AVFrame& frame) {
    if (!pool)
        pool = std::make_unique<PixelBufferPool>(PixelFormat::ycbcr420, frame.width, frame.height,
                                                 std::numeric_limits<std::int64_t>::max());
    std::shared_ptr<PixelBuffer> made = pool->take();
    if (!made)
        throw MovieError("Cannot allocate memory");
    for (std::size_t plane = 0; plane < planeShapes(PixelFormat::ycbcr420).size(); ++plane) {
        const PixelLayout::Plane& shape = made->layout().planes[plane];
        for (std::int64_t row = 0; row < shape.height; ++row)
            std::memcpy(made->plane(plane) + row * shape.bytesPerRow,
                        frame.data[plane] + row * frame.linesize[plane],
                        static_cast<std::size_t>(shape.width));
    }
    return made;
}

} // namespace

std::vector<VideoPacket> encodedInOrder(std::span<const VideoPacket> group, std::int64_t first,
                                        LibavEncoder& encoder) {
    std::vector<VideoPacket> packets;
    const auto keep = [&](VideoPacket packet) { packets.push_back(std::move(packet)); };
    const auto encode = [&](std::shared_ptr<const PixelBuffer> picture, std::int64_t frame) {
        const auto kind = frame == first ? PictureKind::intra : PictureKind::predicted;
        if (frame >= first)
            encoder.encodeAs(kind, std::move(picture), frame, keep);
    };
    Decoder decoder(encoder.configuration());
    for (const VideoPacket& packet : group)
        decoder.decode(packet, encode);
    decoder.finish(encode);
    encoder.finish(keep);
    return packets;
}

} // namespace tarnwick::hevc
