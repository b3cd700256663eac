#include "TarnwickPlatform/Movie/Files/MovieFile.h"

#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <cmath>
#include <cstring>
#include <numeric>

namespace tarnwick {

struct MovieFile::Container {
    AVFormatContext* context = nullptr;
    AVStream* video = nullptr;
    AVStream* sound = nullptr;
    std::int64_t framesPerSecond = 0;
    std::int64_t delay = 0;
    std::int64_t firstFrame = 0;
    std::int64_t packets = 0;        // of the picture track, so far
    std::int64_t sampleRate = 48000; // of the sound, if there is any

    Container(const std::filesystem::path& file, MovieFileType type);
    ~Container();

    AVStream* addStream();
    void write(std::span<const std::byte> bytes, AVPacket& packet, AVRational timeBase);
};

MovieFile::Container::Container(const std::filesystem::path& file, MovieFileType type) {
    catchLibavWords();
    const char* name = type == MovieFileType::quickTime ? "mov" : "mp4";
    throwingWhenNegative(libav().avformat_alloc_output_context2(&context, nullptr, name,
                                                                ("file:" + file.string()).c_str()));
    // Writes neither the time nor the library's version, so that the same frames give the same
    // file.
    context->flags |= AVFMT_FLAG_BITEXACT;
    const int opened = libav().avio_open(&context->pb, context->url, AVIO_FLAG_WRITE);
    if (opened >= 0)
        return;
    libav().avformat_free_context(context);
    throwingWhenNegative(opened);
}

MovieFile::Container::~Container() {
    libav().avio_closep(&context->pb);
    libav().avformat_free_context(context);
}

AVStream* MovieFile::Container::addStream() {
    return throwingWhenNull(libav().avformat_new_stream(context, nullptr));
}

namespace {

void setConfiguration(AVCodecParameters& parameters, std::span<const std::byte> configuration) {
    if (configuration.empty())
        return;
    parameters.extradata = throwingWhenNull(static_cast<std::uint8_t*>(
        libav().av_mallocz(configuration.size() + AV_INPUT_BUFFER_PADDING_SIZE)));
    std::memcpy(parameters.extradata, configuration.data(), configuration.size());
    parameters.extradata_size = static_cast<int>(configuration.size());
}

// The movie's time scale, in which edit lists are, has whole numbers for frames and samples.
AVDictionary* muxerOptions(std::int64_t framesPerSecond, std::int64_t sampleRate) {
    AVDictionary* options = nullptr;
    libav().av_dict_set_int(&options, "movie_timescale", std::lcm(framesPerSecond, sampleRate), 0);
    libav().av_dict_set(&options, "movflags", "+faststart+write_colr", 0);
    libav().av_dict_set_int(&options, "video_track_timescale", framesPerSecond * 1000, 0);
    return options;
}

void setChapters(AVFormatContext& context, const std::vector<MovieChapter>& chapters) {
    if (chapters.empty())
        return;
    context.chapters = throwingWhenNull(
        static_cast<AVChapter**>(libav().av_calloc(chapters.size(), sizeof(AVChapter*))));
    constexpr double ticks = 1000;
    for (const MovieChapter& chapter : chapters) {
        auto* made =
            throwingWhenNull(static_cast<AVChapter*>(libav().av_mallocz(sizeof(AVChapter))));
        context.chapters[context.nb_chapters++] = made;
        made->id = context.nb_chapters;
        made->time_base = {1, static_cast<int>(ticks)};
        made->start = std::llround(chapter.start * ticks);
        libav().av_dict_set(&made->metadata, "title", chapter.title.c_str(), 0);
    }
}

// Each chapter ends where the next begins, the last at the end of the movie.
void endChapters(AVFormatContext& context, double seconds) {
    for (unsigned index = 0; index < context.nb_chapters; ++index) {
        AVChapter& chapter = *context.chapters[index];
        chapter.end = index + 1 < context.nb_chapters ? context.chapters[index + 1]->start
                                                      : std::llround(seconds * 1000);
        chapter.end = std::max(chapter.end, chapter.start);
    }
}

} // namespace

SampleEntry sampleEntry(VideoCodec codec) {
    const std::string_view tag = videoCodecRow(codec).tag;
    return {.tag = MKTAG(tag[0], tag[1], tag[2], tag[3]), .depth = hasAlpha(codec) ? 32 : 24};
}

MovieFile::MovieFile(const std::filesystem::path& file, MovieFileType type)
    : container(std::make_unique<Container>(file, type)) {}

MovieFile::~MovieFile() = default;

void MovieFile::addVideo(const VideoSettings& settings, std::span<const std::byte> configuration,
                         std::int64_t delay) {
    AVStream* stream = container->video = container->addStream();
    container->framesPerSecond = settings.framesPerSecond;
    container->delay = delay;
    const VideoCodecRow& row = videoCodecRow(settings.codec);
    AVCodecParameters& parameters = *stream->codecpar;
    parameters.codec_type = AVMEDIA_TYPE_VIDEO;
    parameters.codec_id = encoderNamed(row.encoder).id;
    parameters.codec_tag = sampleEntry(row.codec).tag;
    parameters.bits_per_coded_sample = sampleEntry(row.codec).depth;
    parameters.width = static_cast<int>(settings.width);
    parameters.height = static_cast<int>(settings.height);
    parameters.sample_aspect_ratio = stream->sample_aspect_ratio = {1, 1};
    parameters.field_order = AV_FIELD_PROGRESSIVE;
    parameters.color_range = AVCOL_RANGE_MPEG;
    parameters.color_primaries = AVCOL_PRI_BT709;
    parameters.color_trc = AVCOL_TRC_BT709;
    parameters.color_space = AVCOL_SPC_BT709;
    parameters.video_delay = static_cast<int>(delay);
    setConfiguration(parameters, configuration);
    const auto rate = static_cast<int>(settings.framesPerSecond);
    stream->avg_frame_rate = stream->r_frame_rate = {rate, 1};
    stream->time_base = {1, rate};
}

void MovieFile::addSound(const AudioSettings& settings, const SoundFormat& format) {
    AVStream* stream = container->sound = container->addStream();
    container->sampleRate = settings.sampleRate;
    AVCodecParameters& parameters = *stream->codecpar;
    parameters.codec_type = AVMEDIA_TYPE_AUDIO;
    parameters.codec_id = AV_CODEC_ID_AAC;
    parameters.profile = FF_PROFILE_AAC_LOW;
    parameters.sample_rate = static_cast<int>(settings.sampleRate);
    parameters.frame_size = static_cast<int>(format.samplesPerPacket);
    parameters.initial_padding = static_cast<int>(format.priming);
    libav().av_channel_layout_default(&parameters.ch_layout, static_cast<int>(settings.channels));
    setConfiguration(parameters, format.configuration);
    stream->time_base = {1, static_cast<int>(settings.sampleRate)};
}

void MovieFile::begin(std::int64_t firstFrame) {
    catchLibavWords();
    container->firstFrame = firstFrame;
    if (firstFrame > 0)
        libav().av_dict_set(&container->context->metadata, "comment",
                            (std::string(firstFrameComment) + std::to_string(firstFrame)).c_str(),
                            0);
    AVDictionary* options = muxerOptions(container->framesPerSecond, container->sampleRate);
    const int begun = libav().avformat_write_header(container->context, &options);
    libav().av_dict_free(&options);
    throwingWhenNegative(begun);
}

void MovieFile::Container::write(std::span<const std::byte> bytes, AVPacket& packet,
                                 AVRational timeBase) {
    catchLibavWords();
    // Borrowed: the muxer copies what it keeps.
    packet.data = reinterpret_cast<std::uint8_t*>(const_cast<std::byte*>(bytes.data()));
    packet.size = static_cast<int>(bytes.size());
    libav().av_packet_rescale_ts(&packet, timeBase,
                                 context->streams[packet.stream_index]->time_base);
    throwingWhenNegative(libav().av_write_frame(context, &packet));
}

void MovieFile::write(const VideoPacket& packet) {
    LibavOwner<AVPacket> made(throwingWhenNull(libav().av_packet_alloc()));
    made->stream_index = container->video->index;
    made->pts = packet.frame - container->firstFrame;
    made->dts = container->packets++ - container->delay;
    made->duration = 1;
    if (packet.isKeyFrame)
        made->flags |= AV_PKT_FLAG_KEY;
    container->write(packet.bytes, *made, {1, static_cast<int>(container->framesPerSecond)});
}

void MovieFile::write(const SoundPacket& packet) {
    LibavOwner<AVPacket> made(throwingWhenNull(libav().av_packet_alloc()));
    made->stream_index = container->sound->index;
    made->pts = made->dts = packet.sample;
    made->duration = packet.duration;
    made->flags |= AV_PKT_FLAG_KEY;
    container->write(packet.bytes, *made, {1, static_cast<int>(container->sampleRate)});
}

void MovieFile::finish(const std::vector<MovieChapter>& chapters) {
    catchLibavWords();
    if (container->packets == 0)
        throw MovieError("The movie has no pictures.");
    setChapters(*container->context, chapters);
    endChapters(*container->context, static_cast<double>(container->packets) /
                                         static_cast<double>(container->framesPerSecond));
    throwingWhenNegative(libav().av_write_trailer(container->context));
    libav().avio_flush(container->context->pb);
    throwingWhenNegative(container->context->pb->error);
    throwingWhenNegative(libav().avio_closep(&container->context->pb));
}

} // namespace tarnwick
