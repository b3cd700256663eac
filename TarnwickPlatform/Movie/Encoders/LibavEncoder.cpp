// The encoders of libavcodec. docs/measurements.md compares their options.

#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"

#include <algorithm>
#include <string>
#include <thread>

namespace tarnwick {

namespace {

// With AVX-512, x264 164 reads uninitialised memory where it follows macroblocks through time
// (mbtree), and its packets depend on that memory. Its AVX2 functions do not.
std::string x264Functions() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512bw"))
        return "\\:asm=MMX2,SSE2Fast,LZCNT,SSSE3,SSE4.2,AVX,FMA3,BMI2,AVX2";
#endif
    return "";
}

std::string optionsOf(const VideoSettings& settings) {
    const VideoCodecRow& row = videoCodecRow(settings.codec);
    return speedOption(settings) + row.options +
           (settings.codec == VideoCodec::h264 ? x264Functions() : "");
}

// A frame that borrows the picture's memory and owns a reference to the picture until the encoder
// releases the frame.
LibavOwner<AVFrame> frameOf(std::shared_ptr<const PixelBuffer> picture, AVPixelFormat format) {
    LibavOwner<AVFrame> frame(throwingWhenNull(libav().av_frame_alloc()));
    frame->format = format;
    frame->width = static_cast<int>(picture->width());
    frame->height = static_cast<int>(picture->height());
    frame->color_range = AVCOL_RANGE_MPEG;
    frame->color_primaries = AVCOL_PRI_BT709;
    frame->color_trc = AVCOL_TRC_BT709;
    frame->colorspace = AVCOL_SPC_BT709;
    frame->chroma_location = AVCHROMA_LOC_LEFT;
    for (std::size_t plane = 0; plane < planeShapes(picture->format()).size(); ++plane) {
        frame->data[plane] = reinterpret_cast<std::uint8_t*>(picture->plane(plane));
        frame->linesize[plane] = static_cast<int>(picture->layout().planes[plane].bytesPerRow);
    }
    auto bytes = static_cast<std::size_t>(picture->layout().bytes);
    std::uint8_t* address = frame->data[0];
    auto keep = std::make_unique<std::shared_ptr<const PixelBuffer>>(std::move(picture));
    frame->buf[0] = throwingWhenNull(libav().av_buffer_create(
        address, bytes,
        [](void* kept, std::uint8_t*) {
            delete static_cast<std::shared_ptr<const PixelBuffer>*>(kept);
        },
        keep.get(), AV_BUFFER_FLAG_READONLY));
    keep.release();
    return frame;
}

PictureKind kindOf(AVPictureType type) {
    switch (type) {
    case AV_PICTURE_TYPE_P:
        return PictureKind::predicted;
    case AV_PICTURE_TYPE_B:
        return PictureKind::bidirectional;
    default:
        return PictureKind::intra;
    }
}

AVPictureType typeOf(PictureKind kind) {
    switch (kind) {
    case PictureKind::intra:
        return AV_PICTURE_TYPE_I;
    case PictureKind::predicted:
        return AV_PICTURE_TYPE_P;
    case PictureKind::bidirectional:
        return AV_PICTURE_TYPE_B;
    }
    return AV_PICTURE_TYPE_NONE;
}

// Reads the encoder's statistics in a packet's side data: 32 bits of quality, then the picture's
// type.
PictureKind kindOf(const AVPacket& packet) {
    constexpr std::size_t typeOffset = 4;
    std::size_t size = 0;
    const std::uint8_t* statistics =
        libav().av_packet_get_side_data(&packet, AV_PKT_DATA_QUALITY_STATS, &size);
    return statistics && size > typeOffset
               ? kindOf(static_cast<AVPictureType>(statistics[typeOffset]))
               : PictureKind::intra;
}

} // namespace

LibavEncoder::LibavEncoder(const VideoSettings& settings, const std::string& options) {
    catchLibavWords();
    const VideoCodecRow& row = videoCodecRow(settings.codec);
    const AVCodec& codec = encoderNamed(row.encoder);
    context.reset(throwingWhenNull(libav().avcodec_alloc_context3(&codec)));
    context->pix_fmt = libav().av_get_pix_fmt(pixelFormatRow(row.pixelFormat).libavName);
    describe(settings);
    AVDictionary* dictionary = nullptr;
    throwingWhenNegative(libav().av_dict_parse_string(&dictionary, options.c_str(), "=", ":", 0));
    const int opened = libav().avcodec_open2(context.get(), &codec, &dictionary);
    libav().av_dict_free(&dictionary);
    throwingWhenNegative(opened);
}

// libavcodec does not report the delay of libx265. It is 2, as a B frame may be a reference.
std::int64_t LibavEncoder::delay() const {
    return context->codec_id == AV_CODEC_ID_HEVC ? 2 : context->has_b_frames;
}

void LibavEncoder::describe(const VideoSettings& settings) {
    context->width = static_cast<int>(settings.width);
    context->height = static_cast<int>(settings.height);
    context->time_base = {1, static_cast<int>(settings.framesPerSecond)};
    context->framerate = {static_cast<int>(settings.framesPerSecond), 1};
    context->sample_aspect_ratio = {1, 1};
    context->color_range = AVCOL_RANGE_MPEG;
    context->color_primaries = AVCOL_PRI_BT709;
    context->color_trc = AVCOL_TRC_BT709;
    context->colorspace = AVCOL_SPC_BT709;
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (videoCodecRow(settings.codec).isIntraOnly) {
        context->thread_type = FF_THREAD_FRAME;
        context->thread_count =
            static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 16U));
        return;
    }
    context->chroma_sample_location = AVCHROMA_LOC_LEFT;
    context->bit_rate = settings.averageBitRate;
    context->gop_size = static_cast<int>(settings.maxKeyFrameInterval);
    context->flags |= AV_CODEC_FLAG_CLOSED_GOP;
}

void LibavEncoder::encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                          const VideoPacketSink& sink) {
    send(std::move(picture), frame, AV_PICTURE_TYPE_NONE, sink);
}

void LibavEncoder::encodeAs(PictureKind kind, std::shared_ptr<const PixelBuffer> picture,
                            std::int64_t frame, const VideoPacketSink& sink) {
    send(std::move(picture), frame, typeOf(kind), sink);
}

void LibavEncoder::send(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                        AVPictureType type, const VideoPacketSink& sink) {
    if (firstFrame < 0)
        firstFrame = frame;
    catchLibavWords();
    LibavOwner<AVFrame> wrapped = frameOf(std::move(picture), context->pix_fmt);
    wrapped->pts = frame - firstFrame;
    wrapped->pict_type = type;
    throwingWhenNegative(libav().avcodec_send_frame(context.get(), wrapped.get()));
    drain(sink);
}

void LibavEncoder::finish(const VideoPacketSink& sink) {
    catchLibavWords();
    throwingWhenNegative(libav().avcodec_send_frame(context.get(), nullptr));
    drain(sink);
}

void LibavEncoder::drain(const VideoPacketSink& sink) {
    takePackets(*context, [&](const AVPacket& packet) {
        const auto* bytes = reinterpret_cast<const std::byte*>(packet.data);
        sink({.bytes = {bytes, bytes + packet.size},
              .frame = firstFrame + packet.pts,
              .isKeyFrame = (packet.flags & AV_PKT_FLAG_KEY) != 0,
              .kind = kindOf(packet)});
    });
}

std::vector<std::byte> LibavEncoder::configuration() const {
    const auto* bytes = reinterpret_cast<const std::byte*>(context->extradata);
    return {bytes, bytes + context->extradata_size};
}

std::string speedOption(const VideoSettings& settings) {
    const VideoCodecRow& row = videoCodecRow(settings.codec);
    return settings.speed == EncodingSpeed::quick ? row.quickSpeed : row.usualSpeed;
}

std::unique_ptr<VideoEncoder> makeLibavEncoder(const VideoSettings& settings) {
    return std::make_unique<LibavEncoder>(settings, optionsOf(settings));
}

} // namespace tarnwick
