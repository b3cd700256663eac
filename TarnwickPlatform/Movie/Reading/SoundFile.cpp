#include "TarnwickPlatform/Movie/Reading/SoundFile.h"

#include "TarnwickBase/Quoted.h"
#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>

namespace tarnwick {
namespace {

// Hertz. The resampler's tables grow with the rate of the file, its output with the inverse.
constexpr int leastRate = 1000, mostRate = 3'072'000;

constexpr double leadIn = 0.2; // seconds that are decoded before the wanted place after a seek

struct InputCloser {
    void operator()(AVFormatContext* context) const { libav().avformat_close_input(&context); }
};
struct ResamplerFreer {
    void operator()(SwrContext* context) const { libav().swr_free(&context); }
};

std::unique_ptr<AVFormatContext, InputCloser> opened(const std::filesystem::path& file) {
    catchLibavWords();
    AVFormatContext* context = nullptr;
    throwingWhenNegative(
        libav().avformat_open_input(&context, ("file:" + file.string()).c_str(), nullptr, nullptr));
    std::unique_ptr<AVFormatContext, InputCloser> owner(context);
    throwingWhenNegative(libav().avformat_find_stream_info(context, nullptr));
    return owner;
}

// What the resampler is made for. A damaged stream may change it at any frame.
struct FrameForm {
    int format = 0, rate = 0, channels = 0;

    static FrameForm of(const AVFrame& frame) {
        return {frame.format, frame.sample_rate, frame.ch_layout.nb_channels};
    }
    bool isFit() const { return rate >= leastRate && rate <= mostRate && channels > 0; }
    bool operator==(const FrameForm&) const = default;
};

} // namespace

struct SoundFile::Decoder {
    std::unique_ptr<AVFormatContext, InputCloser> input;
    LibavOwner<AVCodecContext> codec;
    std::unique_ptr<SwrContext, ResamplerFreer> resampler;
    FrameForm form; // of the frames that the resampler takes
    LibavOwner<AVPacket> packet{throwingWhenNull(libav().av_packet_alloc())};
    LibavOwner<AVFrame> frame{throwingWhenNull(libav().av_frame_alloc())};
    AVStream* stream = nullptr;
    std::int64_t length = 0;
    std::vector<float> waiting; // decoded frames, interleaved stereo
    std::int64_t first = 0;     // number of the first of them
    int outChannels = 2;        // of the resampler
    bool isPlaced = true;       // `first` is known, not only after the next decoded frame
    bool isAtEnd = false;

    void openCodec();
    void seek(std::int64_t number);
    bool decodeMore();
    void take();
    int place();
    void makeResampler();
    void resample(const AVFrame* next, int skipped);
    std::int64_t waitingFrames() const { return std::ssize(waiting) / 2; }
};

void SoundFile::Decoder::openCodec() {
    const AVCodec* decoder = nullptr;
    const int index =
        libav().av_find_best_stream(input.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (index < 0 || decoder == nullptr)
        throw MovieError("no sound that can be decoded is in it");
    stream = input->streams[index];
    for (unsigned other = 0; other < input->nb_streams; ++other)
        if (static_cast<int>(other) != index)
            input->streams[other]->discard = AVDISCARD_ALL;
    if (const int given = stream->codecpar->sample_rate; given < leastRate || given > mostRate)
        throw MovieError("its sample rate is " + std::to_string(given) + " Hz, not one of " +
                         std::to_string(leastRate) + " to " + std::to_string(mostRate));
    codec.reset(throwingWhenNull(libav().avcodec_alloc_context3(decoder)));
    throwingWhenNegative(libav().avcodec_parameters_to_context(codec.get(), stream->codecpar));
    codec->pkt_timebase = stream->time_base;
    throwingWhenNegative(libav().avcodec_open2(codec.get(), decoder, nullptr));
    const AVRational unit = stream->duration > 0 ? stream->time_base : AVRational{1, AV_TIME_BASE};
    const std::int64_t duration = stream->duration > 0 ? stream->duration : input->duration;
    length = std::max<std::int64_t>(libav().av_rescale_q(duration, unit, {1, SoundFile::rate}), 0);
}

void SoundFile::Decoder::makeResampler() {
    AVChannelLayout to;
    outChannels = std::min(frame->ch_layout.nb_channels, 2);
    libav().av_channel_layout_default(&to, outChannels);
    SwrContext* made = nullptr;
    throwingWhenNegative(libav().swr_alloc_set_opts2(
        &made, &to, AV_SAMPLE_FMT_FLT, SoundFile::rate, &frame->ch_layout,
        static_cast<AVSampleFormat>(frame->format), frame->sample_rate, 0, nullptr));
    resampler.reset(made);
    throwingWhenNegative(libav().swr_init(made));
    form = FrameForm::of(*frame);
}

// Resamples `next` but its first samples, or the rest if it is null, into `waiting`.
void SoundFile::Decoder::resample(const AVFrame* next, int skipped) {
    if (!resampler)
        return;
    const int samples = next != nullptr ? next->nb_samples - skipped : 0;
    const int most = libav().swr_get_out_samples(resampler.get(), samples);
    if (most <= 0)
        return;
    std::vector<const std::uint8_t*> planes;
    if (next != nullptr) {
        const auto format = static_cast<AVSampleFormat>(next->format);
        const int channels = next->ch_layout.nb_channels,
                  bytes = libav().av_get_bytes_per_sample(format);
        const bool isPlanar = libav().av_sample_fmt_is_planar(format) != 0;
        for (int plane = 0; plane < (isPlanar ? channels : 1); ++plane)
            planes.push_back(next->extended_data[plane] +
                             skipped * bytes * (isPlanar ? 1 : channels));
    }
    const int channels = outChannels;
    std::vector<float> out(static_cast<std::size_t>(most) * static_cast<std::size_t>(channels));
    auto* bytes = reinterpret_cast<std::uint8_t*>(out.data());
    const int got = libav().swr_convert(resampler.get(), &bytes, most,
                                        planes.empty() ? nullptr : planes.data(), samples);
    for (int at = 0; at < std::max(got, 0); ++at)
        for (int side = 0; side < 2; ++side)
            waiting.push_back(out[static_cast<std::size_t>(at * channels + side % channels)]);
}

// After a seek: finds the number of the first frame, by the time of what was decoded, at a sample
// of the file that is at a whole frame. Returns the number of samples before it.
int SoundFile::Decoder::place() {
    const std::int64_t time = frame->best_effort_timestamp;
    if (isPlaced || time == AV_NOPTS_VALUE) {
        isPlaced = true;
        return 0;
    }
    const std::int64_t start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
    const std::int64_t unit =
        frame->sample_rate / std::gcd<std::int64_t>(frame->sample_rate, SoundFile::rate);
    const std::int64_t sample =
        libav().av_rescale_q(time - start, stream->time_base, {1, frame->sample_rate});
    const auto skipped = static_cast<int>(((-sample) % unit + unit) % unit);
    if (skipped >= frame->nb_samples)
        return frame->nb_samples; // the next frame has such a sample
    isPlaced = true;
    first = libav().av_rescale(sample + skipped, SoundFile::rate, frame->sample_rate);
    return skipped;
}

void SoundFile::Decoder::take() {
    if (!FrameForm::of(*frame).isFit())
        return;
    const int skipped = place();
    if (skipped >= frame->nb_samples)
        return;
    if (resampler && form != FrameForm::of(*frame)) {
        resample(nullptr, 0);
        resampler.reset();
    }
    if (!resampler)
        makeResampler();
    resample(frame.get(), skipped);
}

// Decodes the next packet. False at the end.
bool SoundFile::Decoder::decodeMore() {
    if (isAtEnd)
        return false;
    const int got = libav().av_read_frame(input.get(), packet.get());
    isAtEnd = got < 0;
    if (isAtEnd || packet->stream_index == stream->index)
        libav().avcodec_send_packet(codec.get(), isAtEnd ? nullptr : packet.get());
    libav().av_packet_unref(packet.get());
    while (libav().avcodec_receive_frame(codec.get(), frame.get()) >= 0) {
        take();
        libav().av_frame_unref(frame.get());
    }
    if (isAtEnd) {
        resample(nullptr, 0);
        length = first + waitingFrames();
    }
    return true;
}

void SoundFile::Decoder::seek(std::int64_t number) {
    const std::int64_t start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
    const auto before =
        std::max<std::int64_t>(number - static_cast<std::int64_t>(leadIn * SoundFile::rate), 0);
    const std::int64_t time =
        start + libav().av_rescale_q(before, {1, SoundFile::rate}, stream->time_base);
    if (libav().av_seek_frame(input.get(), stream->index, time, AVSEEK_FLAG_BACKWARD) < 0)
        libav().av_seek_frame(input.get(), stream->index, start, AVSEEK_FLAG_BACKWARD);
    libav().avcodec_flush_buffers(codec.get());
    resampler.reset();
    waiting.clear();
    first = before;
    isPlaced = isAtEnd = false;
}

SoundFile::SoundFile(std::unique_ptr<Decoder> decoder) : decoder_(std::move(decoder)) {}

SoundFile::~SoundFile() = default;

std::unique_ptr<SoundFile> SoundFile::open(const std::filesystem::path& file) {
    try {
        auto decoder = std::make_unique<Decoder>();
        decoder->input = opened(file);
        decoder->openCodec();
        return std::unique_ptr<SoundFile>(new SoundFile(std::move(decoder)));
    } catch (const MovieError& error) {
        throw MovieError("The sound of " + tarnwick::quoted(file.filename().string()) +
                         " cannot be read: " + error.what() + ".");
    }
}

std::int64_t SoundFile::length() const {
    return decoder_->length;
}

std::vector<float> SoundFile::read(std::int64_t first, std::int64_t count) {
    Decoder& from = *decoder_;
    const std::int64_t ahead = first - (from.first + from.waitingFrames());
    if (first < from.first || ahead > rate || (from.isAtEnd && ahead > 0))
        from.seek(first);
    while (from.first + from.waitingFrames() < first + count && from.decodeMore()) {
        const std::int64_t passed =
            from.isPlaced ? std::clamp<std::int64_t>(first - from.first, 0, from.waitingFrames())
                          : 0;
        from.waiting.erase(from.waiting.begin(), from.waiting.begin() + 2 * passed);
        from.first += passed;
    }
    std::vector<float> read;
    for (std::int64_t number = first; number < first + count; ++number) {
        const std::int64_t at = number - from.first;
        if (at >= from.waitingFrames())
            break;
        for (std::int64_t side = 0; side < 2; ++side) // frames before the first decoded are silent
            read.push_back(at < 0 ? 0.0f : from.waiting[static_cast<std::size_t>(2 * at + side)]);
    }
    return read;
}

} // namespace tarnwick
