#include "TarnwickPlatform/Movie/Files/MoviePart.h"

#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <charconv>
#include <cstring>

namespace tarnwick {

struct MoviePart::Container {
    std::filesystem::path path;
    AVFormatContext* context = nullptr;
    AVStream* video = nullptr;
    AVStream* sound = nullptr;
    int wanted = -1; // index of the track that is read

    ~Container() { libav().avformat_close_input(&context); }

    AVStream* stream(AVMediaType type) const;
    void checkIsWhole() const;
    void checkTimes() const;
    LibavOwner<AVPacket> next() const;
    std::int64_t framesPerSecond() const;
};

namespace {

// The track's times are in thousandths of a frame.
constexpr int ticksPerFrame = 1000;

constexpr std::int64_t samplesPerPacket = 1024; // of AAC-LC

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& why) {
    throw MovieError(path.string() + " cannot be read as a movie: " + why + ".",
                     MovieError::Kind::parts);
}

// HEVC with alpha differs from HEVC only by the depth; libav reports 0 for 24.
std::optional<VideoCodec> codecOf(const AVCodecParameters& parameters) {
    const int depth = parameters.bits_per_coded_sample == 32 ? 32 : 24;
    for (const VideoCodecRow& row : videoCodecRows)
        if (sampleEntry(row.codec) == SampleEntry{parameters.codec_tag, depth})
            return row.codec;
    return std::nullopt;
}

std::vector<std::byte> bytesOf(const std::uint8_t* address, int size) {
    const auto* bytes = reinterpret_cast<const std::byte*>(address);
    return {bytes, bytes + size};
}

} // namespace

AVStream* MoviePart::Container::stream(AVMediaType type) const {
    const int index = libav().av_find_best_stream(context, type, -1, -1, nullptr, 0);
    return index < 0 ? nullptr : context->streams[index];
}

// A file that was cut off still has its index, which is before the data.
void MoviePart::Container::checkIsWhole() const {
    const std::int64_t size = libav().avio_size(context->pb);
    for (unsigned track = 0; track < context->nb_streams; ++track) {
        AVStream* stream = context->streams[track];
        for (int at = 0; at < libav().avformat_index_get_entries_count(stream); ++at) {
            const AVIndexEntry& entry = *libav().avformat_index_get_entry(stream, at);
            if (entry.pos + entry.size > size)
                fail(path, "it is cut off");
        }
    }
}

// MovieFile writes pictures that are decoded one frame after the other; others are refused.
void MoviePart::Container::checkTimes() const {
    const AVIndexEntry* first = libav().avformat_index_get_entry(video, 0);
    if (!first)
        fail(path, "it has no pictures in its index");
    for (int at = 0; at < libav().avformat_index_get_entries_count(video); ++at) {
        const AVIndexEntry& entry = *libav().avformat_index_get_entry(video, at);
        if (first->timestamp % ticksPerFrame != 0 ||
            entry.timestamp != first->timestamp + std::int64_t{at} * ticksPerFrame)
            fail(path, "its pictures are not one frame apart");
    }
}

// The next packet of the track that is read; null at the end.
LibavOwner<AVPacket> MoviePart::Container::next() const {
    LibavOwner<AVPacket> packet(throwingWhenNull(libav().av_packet_alloc()));
    for (;;) {
        catchLibavWords();
        const int read = libav().av_read_frame(context, packet.get());
        if (read == AVERROR_EOF)
            return nullptr;
        if (read < 0)
            fail(path, libavWords(read));
        if (packet->stream_index == wanted)
            return packet;
        libav().av_packet_unref(packet.get());
    }
}

std::int64_t MoviePart::Container::framesPerSecond() const {
    return video->time_base.den / ticksPerFrame;
}

MoviePart::MoviePart(const std::filesystem::path& file, Track track)
    : container(std::make_unique<Container>()) {
    catchLibavWords();
    container->path = file;
    const std::string name = "file:" + file.string();
    const int opened =
        libav().avformat_open_input(&container->context, name.c_str(), nullptr, nullptr);
    if (opened < 0)
        fail(file, libavWords(opened));
    container->video = container->stream(AVMEDIA_TYPE_VIDEO);
    container->sound = container->stream(AVMEDIA_TYPE_AUDIO);
    if (!container->video || !codecOf(*container->video->codecpar) ||
        container->video->time_base.num != 1 ||
        container->video->time_base.den % ticksPerFrame != 0)
        fail(file, "its picture track is of another kind than those that are written here");
    container->checkIsWhole();
    container->checkTimes();
    const AVStream* wanted = track == Track::video ? container->video : container->sound;
    container->wanted = wanted ? wanted->index : -1;
}

MoviePart::MoviePart(MoviePart&&) noexcept = default;
MoviePart::~MoviePart() = default;

const std::filesystem::path& MoviePart::path() const {
    return container->path;
}

VideoSettings MoviePart::video() const {
    const AVCodecParameters& parameters = *container->video->codecpar;
    return {.codec = *codecOf(parameters),
            .width = parameters.width,
            .height = parameters.height,
            .framesPerSecond = container->framesPerSecond()};
}

std::vector<std::byte> MoviePart::configuration() const {
    const AVCodecParameters& parameters = *container->video->codecpar;
    return bytesOf(parameters.extradata, parameters.extradata_size);
}

std::int64_t MoviePart::firstFrame() const {
    const AVDictionaryEntry* entry =
        libav().av_dict_get(container->context->metadata, "comment", nullptr, 0);
    if (!entry || !std::string_view(entry->value).starts_with(firstFrameComment))
        return 0;
    const std::string_view digits = std::string_view(entry->value).substr(firstFrameComment.size());
    std::int64_t frame = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), frame);
    return frame;
}

std::int64_t MoviePart::frameCount() const {
    return libav().avformat_index_get_entries_count(container->video);
}

std::int64_t MoviePart::delay() const {
    const AVIndexEntry* first = libav().avformat_index_get_entry(container->video, 0);
    return first ? -first->timestamp / ticksPerFrame : 0;
}

bool MoviePart::hasSound() const {
    return container->sound != nullptr;
}

AudioSettings MoviePart::sound() const {
    const AVCodecParameters& parameters = *container->sound->codecpar;
    return {.sampleRate = parameters.sample_rate, .channels = parameters.ch_layout.nb_channels};
}

SoundFormat MoviePart::soundFormat() const {
    const AVCodecParameters& parameters = *container->sound->codecpar;
    // The first packet's time is minus the priming that the edit list removes.
    const AVIndexEntry* first = libav().avformat_index_get_entry(container->sound, 0);
    return {.configuration = bytesOf(parameters.extradata, parameters.extradata_size),
            .priming = first ? std::max<std::int64_t>(0, -first->timestamp) : 0,
            .samplesPerPacket = samplesPerPacket};
}

std::vector<MovieChapter> MoviePart::chapters() const {
    std::vector<MovieChapter> chapters;
    for (unsigned index = 0; index < container->context->nb_chapters; ++index) {
        const AVChapter& chapter = *container->context->chapters[index];
        const AVDictionaryEntry* title = libav().av_dict_get(chapter.metadata, "title", nullptr, 0);
        chapters.push_back({.start = static_cast<double>(chapter.start) * av_q2d(chapter.time_base),
                            .title = title ? title->value : ""});
    }
    return chapters;
}

std::optional<VideoPacket> MoviePart::nextPicture() {
    const LibavOwner<AVPacket> packet = container->next();
    if (!packet)
        return std::nullopt;
    return VideoPacket{.bytes = bytesOf(packet->data, packet->size),
                       .frame = firstFrame() + packet->pts / ticksPerFrame,
                       .isKeyFrame = (packet->flags & AV_PKT_FLAG_KEY) != 0};
}

std::optional<SoundPacket> MoviePart::nextSound() {
    if (!hasSound())
        return std::nullopt;
    const LibavOwner<AVPacket> packet = container->next();
    if (!packet)
        return std::nullopt;
    return SoundPacket{.bytes = bytesOf(packet->data, packet->size),
                       .sample = packet->pts,
                       .duration = packet->duration};
}

} // namespace tarnwick
