#include "tests/TarnwickPlatform/Movie/SmallMovie.h"

#include "TarnwickPlatform/Movie/ColorConversion.h"
#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

namespace tarnwick {

VideoSettings smallVideo(VideoCodec codec) {
    return {.codec = codec,
            .width = 64,
            .height = 48,
            .framesPerSecond = 10,
            .averageBitRate = 200'000,
            .maxKeyFrameInterval = 20};
}

namespace {

std::uint32_t movingPixel(std::int64_t x, std::int64_t y, std::int64_t frame) {
    const auto wave = [&](double across, double down, double speed) {
        const double phase = across * static_cast<double>(x) + down * static_cast<double>(y) +
                             speed * static_cast<double>(frame);
        return static_cast<std::uint32_t>(std::lround(127.5 + 120 * std::sin(phase)));
    };
    const std::uint32_t alpha = static_cast<std::uint32_t>(x * 4) & 255U;
    return wave(0.1, 0.05, 0.3) | wave(0.03, 0.12, -0.2) << 8 | wave(0.07, -0.09, 0.1) << 16 |
           alpha << 24;
}

std::uint32_t noisePixel(std::int64_t x, std::int64_t y, std::int64_t frame) {
    auto bits = static_cast<std::uint32_t>(x * 374761393 + y * 668265263 + frame * 1274126177);
    bits = (bits ^ bits >> 13) * 1274126177U;
    bits = (bits ^ bits >> 16) * 2246822519U;
    return bits ^ bits >> 13;
}

std::uint32_t cornerPixel(std::int64_t x, std::int64_t y, std::int64_t frame) {
    const std::uint32_t bits = noisePixel(x, y, frame);
    std::uint32_t pixel = 0;
    for (std::uint32_t component = 0; component < 4; ++component)
        pixel |= (bits >> component & 1U) * 255U << 8 * component;
    return pixel;
}

std::uint32_t drawnPixel(Content content, std::int64_t x, std::int64_t y, std::int64_t frame) {
    switch (content) {
    case Content::moving:
        return movingPixel(x, y, frame);
    case Content::noise:
        return noisePixel(x, y, frame);
    case Content::corners:
        return cornerPixel(x, y, frame);
    }
    return 0;
}

} // namespace

std::shared_ptr<PixelBuffer> drawnPicture(const VideoSettings& settings, std::int64_t frame,
                                          Content content) {
    auto picture = PixelBufferPool(PixelFormat::bgra, settings.width, settings.height, 1).take();
    for (std::int64_t y = 0; y < settings.height; ++y)
        for (std::int64_t x = 0; x < settings.width; ++x) {
            const std::uint32_t pixel = drawnPixel(content, x, y, frame);
            std::memcpy(picture->plane(0) + y * picture->layout().planes[0].bytesPerRow + 4 * x,
                        &pixel, sizeof pixel);
        }
    return picture;
}

std::shared_ptr<PixelBuffer> convertedPicture(const VideoSettings& settings, std::int64_t frame,
                                              Content content) {
    auto converted = PixelBufferPool(videoCodecRow(settings.codec).pixelFormat, settings.width,
                                     settings.height, 1)
                         .take();
    convertColors(*drawnPicture(settings, frame, content), *converted);
    return converted;
}

std::vector<int> samplesOf(const PixelBuffer& picture, std::size_t plane) {
    const PixelLayout::Plane& where = picture.layout().planes[plane];
    const bool isWide = planeShapes(picture.format())[plane].bytesPerSample == 2;
    std::vector<int> samples;
    for (std::int64_t y = 0; y < where.height; ++y) {
        const std::byte* row = picture.plane(plane) + y * where.bytesPerRow;
        for (std::int64_t x = 0; x < where.width; ++x)
            samples.push_back(isWide ? reinterpret_cast<const std::uint16_t*>(row)[x]
                                     : static_cast<int>(row[x]));
    }
    return samples;
}

void waitFor(const MovieWriter& writer, const MovieInput& input) {
    while (!input.isReadyForMoreMediaData() && writer.status() == MovieWriterStatus::writing)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

namespace {

void appendSound(const MovieWriter& writer, AudioInput& input, std::span<const float> samples) {
    constexpr std::size_t values = 2 * 4800;
    for (std::size_t begin = 0; begin < samples.size(); begin += values) {
        waitFor(writer, input);
        ASSERT_TRUE(input.append(samples.subspan(begin, std::min(values, samples.size() - begin)),
                                 {static_cast<std::int64_t>(begin / 2), 48000}));
    }
    input.markAsFinished();
}

} // namespace

void writeMovie(const std::filesystem::path& file, const SmallMovie& movie) {
    auto writer = MovieWriter::make(file, videoCodecRow(movie.video.codec).fileType);
    VideoInput* video = writer->add(movie.video);
    AudioInput* audio = movie.samples.empty() ? nullptr : writer->add(AudioSettings{});
    ASSERT_NE(video, nullptr) << writer->errorText().value_or("");
    ASSERT_TRUE(writer->startWriting()) << writer->errorText().value_or("");
    const auto rate = static_cast<std::int32_t>(movie.video.framesPerSecond);
    writer->startSession({movie.firstFrame, rate});
    if (audio && movie.order == SoundOrder::beforePictures)
        appendSound(*writer, *audio, movie.samples);
    for (std::int64_t i = movie.firstFrame; i < movie.firstFrame + movie.frames; ++i) {
        waitFor(*writer, *video);
        const bool isConverted = movie.video.source == VideoSettings::Source::converted;
        ASSERT_TRUE(video->append(isConverted ? convertedPicture(movie.video, i, movie.content)
                                              : drawnPicture(movie.video, i, movie.content),
                                  {i, rate}))
            << writer->errorText().value_or("");
    }
    if (audio && movie.order == SoundOrder::afterPictures)
        appendSound(*writer, *audio, movie.samples);
    writer->setChapters(movie.chapters);
    writer->finishWriting();
    ASSERT_EQ(writer->status(), MovieWriterStatus::completed) << writer->errorText().value_or("");
}

double likeness(const std::vector<int>& given, const std::vector<int>& decoded, int bits,
                int moreBits) {
    double sum = 0;
    for (std::size_t i = 0; i < given.size(); ++i)
        sum += std::pow(given[i] - decoded.at(i) / std::exp2(moreBits), 2);
    return 10 * std::log10(std::pow(std::exp2(bits) - 1, 2) * static_cast<double>(given.size()) /
                           std::max(sum, 1e-9));
}

namespace {

// Gives every frame of the file's best track of `type`.
void decode(const std::filesystem::path& file, AVMediaType type,
            const std::function<void(const AVFrame&, AVRational timeBase)>& give) {
    AVFormatContext* context = nullptr;
    ASSERT_GE(libav().avformat_open_input(&context, file.c_str(), nullptr, nullptr), 0);
    const AVCodec* codec = nullptr;
    const int track = libav().av_find_best_stream(context, type, -1, -1, &codec, 0);
    ASSERT_GE(track, 0);
    const AVStream& stream = *context->streams[track];
    LibavOwner<AVCodecContext> decoder(libav().avcodec_alloc_context3(codec));
    ASSERT_GE(libav().avcodec_parameters_to_context(decoder.get(), stream.codecpar), 0);
    decoder->pkt_timebase = stream.time_base;
    decoder->err_recognition = AV_EF_EXPLODE | AV_EF_CAREFUL;
    ASSERT_EQ(libav().avcodec_open2(decoder.get(), codec, nullptr), 0);
    const LibavOwner<AVPacket> packet(libav().av_packet_alloc());
    const LibavOwner<AVFrame> frame(libav().av_frame_alloc());
    for (bool more = true; more;) {
        more = libav().av_read_frame(context, packet.get()) >= 0;
        if (more && packet->stream_index != track) {
            libav().av_packet_unref(packet.get());
            continue;
        }
        ASSERT_GE(libav().avcodec_send_packet(decoder.get(), more ? packet.get() : nullptr), 0);
        libav().av_packet_unref(packet.get());
        while (libav().avcodec_receive_frame(decoder.get(), frame.get()) >= 0)
            give(*frame, stream.time_base);
    }
    libav().avformat_close_input(&context);
}

std::vector<int> planeOf(const AVFrame& frame, int plane, int across, int down, int bytes) {
    std::vector<int> numbers;
    const int width = (frame.width + across - 1) / across;
    for (int y = 0; y < (frame.height + down - 1) / down; ++y) {
        const std::uint8_t* row = frame.data[plane] + y * frame.linesize[plane];
        for (int x = 0; x < width; ++x)
            numbers.push_back(bytes == 1 ? row[x] : row[2 * x] | row[2 * x + 1] << 8);
    }
    return numbers;
}

} // namespace

std::vector<DecodedPicture> decodedPictures(const std::filesystem::path& file) {
    std::vector<DecodedPicture> pictures;
    decode(file, AVMEDIA_TYPE_VIDEO, [&](const AVFrame& frame, AVRational timeBase) {
        const auto format = static_cast<AVPixelFormat>(frame.format);
        const bool is420 = format == AV_PIX_FMT_YUV420P;
        const int across = is420 || format == AV_PIX_FMT_YUV422P10 ? 2 : 1;
        DecodedPicture picture{.seconds = static_cast<double>(frame.pts) * av_q2d(timeBase),
                               .isBT709 = frame.color_range == AVCOL_RANGE_MPEG &&
                                          frame.color_primaries == AVCOL_PRI_BT709 &&
                                          frame.color_trc == AVCOL_TRC_BT709 &&
                                          frame.colorspace == AVCOL_SPC_BT709};
        for (int plane = 0; plane < 4 && frame.data[plane]; ++plane) {
            const bool isChroma = plane == 1 || plane == 2;
            picture.planes.push_back(planeOf(frame, plane, isChroma ? across : 1,
                                             isChroma && is420 ? 2 : 1, is420 ? 1 : 2));
        }
        pictures.push_back(std::move(picture));
    });
    return pictures;
}

std::vector<float> decodedSound(const std::filesystem::path& file) {
    std::vector<float> samples;
    decode(file, AVMEDIA_TYPE_AUDIO, [&](const AVFrame& frame, AVRational) {
        const auto* left = reinterpret_cast<const float*>(frame.data[0]);
        samples.insert(samples.end(), left, left + frame.nb_samples);
    });
    return samples;
}

std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace tarnwick
