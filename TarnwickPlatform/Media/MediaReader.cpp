#include "TarnwickPlatform/Media/MediaReader.h"

#include "TarnwickPlatform/Libav/Libav.h"
#include "TarnwickPlatform/Media/PictureScaler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tarnwick {
namespace {

constexpr double assumedRate = 25; // frames per second, where a file does not say it
constexpr double farAhead = 2;     // seconds beyond which a seek is tried without an index
constexpr int mostDamaged = 100;   // packets in a row that cannot be decoded
constexpr std::int64_t mostPixels = 256'000'000; // of a picture before it is scaled down

struct Deleter {
    void operator()(AVFormatContext* context) const { libav().avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { libav().avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { libav().av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { libav().av_packet_free(&packet); }
};
template <typename Object> using Owner = std::unique_ptr<Object, Deleter>;

std::string wordsOf(int error) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    libav().av_strerror(error, text.data(), text.size());
    return text.data();
}

int interrupted(void* use) {
    const auto& isEnd = static_cast<MediaUse*>(use)->isEnd;
    return isEnd && isEnd() ? 1 : 0;
}

int quarterTurnsOf(const std::uint8_t* matrix) {
    if (matrix == nullptr)
        return 0;
    // Counterclockwise degrees, in [-180, 180].
    const double degrees =
        libav().av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    if (std::isnan(degrees))
        return 0;
    return static_cast<int>((std::lround(-degrees / 90) % 4 + 4) % 4);
}

} // namespace

struct MediaReader::Parts {
    std::string name;
    MediaUse use;
    Owner<AVFormatContext> file;
    AVStream* stream = nullptr; // borrowed from `file`
    Owner<AVCodecContext> decoder;
    Owner<AVPacket> packet{libav().av_packet_alloc()};
    Owner<AVFrame> frame{libav().av_frame_alloc()};
    Owner<AVFrame> ahead{libav().av_frame_alloc()}; // the one after `frame`
    bool hasAhead = false;
    std::unique_ptr<PictureScaler> scaler;
    std::int64_t start = 0; // of the stream, in its time base
    bool isDraining = false;

    [[noreturn]] void fail(const std::string& reason) const {
        throw MediaError(name + " cannot be read: " + reason + ".");
    }
    void require(int result) const {
        if (result < 0)
            fail(wordsOf(result));
    }

    void open(const AVInputFormat* format, const std::string& address, AVDictionary* options);
    void openDecoder();
    bool feed();
    bool read(AVFrame& into);
    double timeOf(const AVFrame& one) const {
        const std::int64_t stamp = one.best_effort_timestamp;
        return stamp == AV_NOPTS_VALUE ? 0 : seconds(stamp - start);
    }
    double seconds(std::int64_t stamp) const {
        return static_cast<double>(stamp) * av_q2d(stream->time_base);
    }
};

void MediaReader::Parts::open(const AVInputFormat* format, const std::string& address,
                              AVDictionary* options) {
    libav().av_log_set_level(AV_LOG_QUIET);
    AVFormatContext* context = libav().avformat_alloc_context();
    if (context == nullptr)
        fail("Cannot allocate memory");
    context->interrupt_callback = {interrupted, &use};
    const int opened = libav().avformat_open_input(&context, address.c_str(), format, &options);
    libav().av_dict_free(&options);
    require(opened); // which frees the context if it fails
    file.reset(context);
    require(libav().avformat_find_stream_info(context, nullptr));
    const int index = libav().av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index < 0)
        fail("it has no pictures");
    stream = context->streams[index];
    for (unsigned other = 0; other < context->nb_streams; ++other)
        if (static_cast<int>(other) != index)
            context->streams[other]->discard = AVDISCARD_ALL;
    start = stream->start_time == AV_NOPTS_VALUE ? 0 : stream->start_time;
    openDecoder();
}

void MediaReader::Parts::openDecoder() {
    const AVCodec* codec = libav().avcodec_find_decoder(stream->codecpar->codec_id);
    if (codec == nullptr)
        fail("there is no decoder for it");
    decoder.reset(libav().avcodec_alloc_context3(codec));
    if (!decoder || !packet || !frame || !ahead)
        fail("Cannot allocate memory");
    require(libav().avcodec_parameters_to_context(decoder.get(), stream->codecpar));
    decoder->thread_count = 2;
    decoder->max_pixels = mostPixels;
    require(libav().avcodec_open2(decoder.get(), codec, nullptr));
    scaler = std::make_unique<PictureScaler>(use.longestSide);
}

// Gives the decoder the next packet, or its end. False if there is nothing more to give.
bool MediaReader::Parts::feed() {
    if (isDraining)
        return false;
    int result = libav().av_read_frame(file.get(), packet.get());
    if (result == AVERROR_EOF) {
        isDraining = true;
        libav().avcodec_send_packet(decoder.get(), nullptr);
        return true;
    }
    require(result);
    if (packet->stream_index == stream->index)
        libav().avcodec_send_packet(decoder.get(), packet.get()); // a damaged one is skipped
    libav().av_packet_unref(packet.get());
    return true;
}

MediaReader::MediaReader(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
MediaReader::~MediaReader() = default;

std::unique_ptr<MediaReader> MediaReader::openFile(const std::filesystem::path& file,
                                                   MediaUse use) {
    loadLibav<MediaError>();
    auto parts = std::make_unique<Parts>();
    parts->name = file.string();
    parts->use = std::move(use);
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        parts->fail("it is a folder");
    AVDictionary* options = nullptr;
    libav().av_dict_set(&options, "protocol_whitelist", "file", 0);
    libav().av_dict_set(&options, "pattern_type", "none", 0); // "%" in a name is not a pattern
    parts->open(nullptr, "file:" + file.string(), options);
    return std::unique_ptr<MediaReader>(new MediaReader(std::move(parts)));
}

std::unique_ptr<MediaReader>
MediaReader::openDevice(const char* format, const std::filesystem::path& device, MediaUse use) {
    loadLibav<MediaError>();
    auto parts = std::make_unique<Parts>();
    parts->name = "The camera " + device.string();
    parts->use = std::move(use);
    const AVInputFormat* input = libav().av_find_input_format(format);
    if (input == nullptr)
        parts->fail("libavdevice was built without cameras");
    AVDictionary* options = nullptr;
    libav().av_dict_set(&options, "timestamps", "abs", 0);
    parts->open(input, device.string(), options);
    return std::unique_ptr<MediaReader>(new MediaReader(std::move(parts)));
}

bool MediaReader::isStill() const {
    const std::string_view name = parts_->file->iformat->name;
    return name == "image2" || name.ends_with("_pipe");
}

std::optional<double> MediaReader::duration() const {
    const AVStream& stream = *parts_->stream;
    if (stream.duration != AV_NOPTS_VALUE && stream.duration > 0)
        return parts_->seconds(stream.duration);
    if (parts_->file->duration != AV_NOPTS_VALUE && parts_->file->duration > 0)
        return static_cast<double>(parts_->file->duration) / AV_TIME_BASE;
    return std::nullopt;
}

bool MediaReader::Parts::read(AVFrame& into) {
    int damaged = 0;
    while (true) {
        const int result = libav().avcodec_receive_frame(decoder.get(), &into);
        if (result == 0)
            return true;
        if (result == AVERROR_EOF)
            return false;
        if (result != AVERROR(EAGAIN) && ++damaged > mostDamaged)
            require(result);
        if (!feed())
            return false;
    }
}

bool MediaReader::next() {
    if (std::exchange(parts_->hasAhead, false)) {
        std::swap(parts_->frame, parts_->ahead);
        return true;
    }
    return parts_->read(*parts_->frame);
}

std::optional<double> MediaReader::nextTime() {
    if (!parts_->hasAhead)
        parts_->hasAhead = parts_->read(*parts_->ahead);
    return parts_->hasAhead ? std::optional(parts_->timeOf(*parts_->ahead)) : std::nullopt;
}

double MediaReader::time() const {
    return parts_->timeOf(*parts_->frame);
}

double MediaReader::frameDuration() const {
    if (parts_->frame->pkt_duration > 0)
        return parts_->seconds(parts_->frame->pkt_duration);
    const AVRational rate =
        libav().av_guess_frame_rate(parts_->file.get(), parts_->stream, nullptr);
    return rate.num > 0 && rate.den > 0 ? 1 / av_q2d(rate) : 1 / assumedRate;
}

void MediaReader::readPicture(Picture& picture) {
    const AVFrameSideData* turned =
        libav().av_frame_get_side_data(parts_->frame.get(), AV_FRAME_DATA_DISPLAYMATRIX);
    const std::uint8_t* matrix =
        turned != nullptr
            ? turned->data
            : libav().av_stream_get_side_data(parts_->stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (!parts_->scaler->convert(*parts_->frame, quarterTurnsOf(matrix), picture))
        parts_->fail("its pictures have an unknown format");
}

void MediaReader::seek(double time) {
    const std::int64_t stamp =
        parts_->start + static_cast<std::int64_t>(time / av_q2d(parts_->stream->time_base));
    const int flags = AVSEEK_FLAG_BACKWARD;
    if (libav().av_seek_frame(parts_->file.get(), parts_->stream->index, stamp, flags) < 0)
        libav().av_seek_frame(parts_->file.get(), parts_->stream->index, 0,
                              flags | AVSEEK_FLAG_BYTE);
    libav().avcodec_flush_buffers(parts_->decoder.get());
    parts_->isDraining = parts_->hasAhead = false;
}

bool MediaReader::seekIsAhead(double time) const {
    const double now = this->time();
    const auto stamp =
        parts_->start + static_cast<std::int64_t>(time / av_q2d(parts_->stream->time_base));
    const int index =
        libav().av_index_search_timestamp(parts_->stream, stamp, AVSEEK_FLAG_BACKWARD);
    const AVIndexEntry* key =
        index < 0 ? nullptr : libav().avformat_index_get_entry(parts_->stream, index);
    if (key == nullptr)
        return time - now > farAhead;
    return parts_->seconds(key->timestamp - parts_->start) > now;
}

} // namespace tarnwick
