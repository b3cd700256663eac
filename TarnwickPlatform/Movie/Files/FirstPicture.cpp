#include "TarnwickPlatform/Movie/FirstPicture.h"

#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <algorithm>

namespace tarnwick {
namespace {

struct MovieCloser {
    void operator()(AVFormatContext* context) const { libav().avformat_close_input(&context); }
};
using OpenMovie = std::unique_ptr<AVFormatContext, MovieCloser>;

OpenMovie opened(const std::filesystem::path& file) {
    AVFormatContext* context = nullptr;
    throwingWhenNegative(libav().avformat_open_input(&context, file.c_str(), nullptr, nullptr));
    OpenMovie movie(context);
    throwingWhenNegative(libav().avformat_find_stream_info(context, nullptr));
    return movie;
}

LibavOwner<AVCodecContext> decoderOf(const AVStream& track, const AVCodec& codec) {
    LibavOwner<AVCodecContext> decoder(throwingWhenNull(libav().avcodec_alloc_context3(&codec)));
    throwingWhenNegative(libav().avcodec_parameters_to_context(decoder.get(), track.codecpar));
    throwingWhenNegative(libav().avcodec_open2(decoder.get(), &codec, nullptr));
    return decoder;
}

// Null if the track has no picture.
LibavOwner<AVFrame> firstFrame(AVFormatContext& movie, int track, AVCodecContext& decoder) {
    LibavOwner<AVFrame> frame(throwingWhenNull(libav().av_frame_alloc()));
    const LibavOwner<AVPacket> packet(throwingWhenNull(libav().av_packet_alloc()));
    while (libav().av_read_frame(&movie, packet.get()) >= 0) {
        if (packet->stream_index == track)
            throwingWhenNegative(libav().avcodec_send_packet(&decoder, packet.get()));
        libav().av_packet_unref(packet.get());
        if (libav().avcodec_receive_frame(&decoder, frame.get()) >= 0)
            return frame;
    }
    libav().avcodec_send_packet(&decoder, nullptr); // the end: the decoder gives what it holds back
    return libav().avcodec_receive_frame(&decoder, frame.get()) >= 0 ? std::move(frame) : nullptr;
}

std::optional<Picture> scaled(const AVFrame& frame, std::uint32_t longestSide) {
    const double scale =
        std::min(1.0, static_cast<double>(longestSide) / std::max(frame.width, frame.height));
    const int width = std::max(1, static_cast<int>(frame.width * scale));
    const int height = std::max(1, static_cast<int>(frame.height * scale));
    const std::unique_ptr<SwsContext, decltype(libav().sws_freeContext)> scaler(
        libav().sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                               width, height, AV_PIX_FMT_BGRA, SWS_AREA, nullptr, nullptr, nullptr),
        libav().sws_freeContext);
    if (!scaler)
        return std::nullopt;
    // The matrix of the movie (Rec. ITU-T H.273, 8.3); by default the library assumes that of
    // BT.601.
    const int* const matrix = libav().sws_getCoefficients(frame.colorspace);
    constexpr int one = 1 << 16; // contrast and saturation, in 16.16
    libav().sws_setColorspaceDetails(scaler.get(), matrix, frame.color_range == AVCOL_RANGE_JPEG,
                                     matrix, 1, 0, one, one);
    const auto rowBytes = static_cast<std::size_t>(width) * 4;
    Picture picture{.width = static_cast<std::uint32_t>(width),
                    .height = static_cast<std::uint32_t>(height),
                    .bytesPerRow = rowBytes};
    constexpr std::size_t margin = 64; // the library may write a little past the last row
    picture.bytes.resize(rowBytes * static_cast<std::size_t>(height) + margin);
    std::uint8_t* const rows[] = {picture.bytes.data()};
    const int strides[] = {static_cast<int>(rowBytes)};
    libav().sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, strides);
    picture.bytes.resize(rowBytes * static_cast<std::size_t>(height));
    for (std::size_t alpha = 3; alpha < picture.bytes.size(); alpha += 4)
        picture.bytes[alpha] = 255;
    return picture;
}

} // namespace

std::optional<Picture> firstPictureOf(const std::filesystem::path& movie,
                                      std::uint32_t longestSide) {
    catchLibavWords();
    try {
        const OpenMovie file = opened(movie);
        const AVCodec* codec = nullptr;
        const int track =
            libav().av_find_best_stream(file.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
        if (track < 0 || codec == nullptr)
            return std::nullopt;
        const auto decoder = decoderOf(*file->streams[track], *codec);
        const auto frame = firstFrame(*file, track, *decoder);
        return frame ? scaled(*frame, longestSide) : std::nullopt;
    } catch (const MovieError&) {
        return std::nullopt;
    }
}

} // namespace tarnwick
