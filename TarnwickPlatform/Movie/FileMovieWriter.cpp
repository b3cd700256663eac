// The writer that MovieWriter::make gives. Frames go through three threads, each behind a bounded
// queue, so that conversion, encoding and writing overlap; sound has one of its own:
//
//   append ── frames ── converting ── pictures ── encoding ──┐
//   append ── samples ── encoding ───────────────────────────┴── packets ── writing
//
// Whatever fails records its words and abandons the queues, at which every thread ends.

#include "TarnwickPlatform/Movie/BoundedQueue.h"
#include "TarnwickPlatform/Movie/ColorConversion.h"
#include "TarnwickPlatform/Movie/MovieError.h"
#include "TarnwickPlatform/Movie/MovieFile.h"
#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickPlatform/Movie/PacketOrder.h"
#include "TarnwickPlatform/Movie/SettingsFault.h"
#include "TarnwickPlatform/Movie/StretchEncoder.h"
#include "TarnwickPlatform/Movie/SoundEncoder.h"
#include "TarnwickPlatform/Movie/VideoEncoder.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t queuedFrames = 3;
constexpr std::size_t queuedPictures = 2;
constexpr std::size_t queuedSampleRuns = 64;

// What all threads of a writer look at.
class WriterState {
  public:
    MovieWriterStatus status() const {
        std::lock_guard lock(mutex);
        return status_;
    }

    std::optional<std::string> errorText() const {
        std::lock_guard lock(mutex);
        return errorText_;
    }

    void say(std::string text) {
        std::lock_guard lock(mutex);
        errorText_ = std::move(text);
    }

    // The first failure stays. Nothing fails that has ended otherwise.
    void fail(std::string text) {
        std::lock_guard lock(mutex);
        if (status_ != MovieWriterStatus::unknown && status_ != MovieWriterStatus::writing)
            return;
        status_ = MovieWriterStatus::failed;
        errorText_ = std::move(text);
    }

    // Whether it was `from`, in which case it is `to` now.
    bool change(MovieWriterStatus from, MovieWriterStatus to) {
        std::lock_guard lock(mutex);
        if (status_ != from)
            return false;
        status_ = to;
        return true;
    }

  private:
    mutable std::mutex mutex;
    MovieWriterStatus status_ = MovieWriterStatus::unknown;
    std::optional<std::string> errorText_;
};

struct QueuedFrame {
    std::shared_ptr<const PixelBuffer> picture;
    std::int64_t frame = 0;
};

class FileVideoInput : public VideoInput {
  public:
    FileVideoInput(const VideoSettings& settings, WriterState& state)
        : settings(settings), state(state), frames(queuedFrames), pictures(queuedPictures) {}

    std::string_view mediaType() const override { return "vide"; }
    bool isReadyForMoreMediaData() const override {
        return begun && frames.hasRoom() && state.status() == MovieWriterStatus::writing;
    }
    void markAsFinished() override { frames.finish(); }
    PixelBufferPool* pixelBufferPool() override { return pool.get(); }
    bool append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) override;

    void makePool();
    void begin(std::int64_t frame);
    void abandon() {
        frames.abandon();
        pictures.abandon();
    }

    // The stages; each ends when there is no more to do, and throws MovieError.
    void convertFrames();
    void encodePictures(const VideoPacketSink& sink);

    const VideoSettings settings;
    std::unique_ptr<VideoEncoder> encoder;

  private:
    WriterState& state;
    std::unique_ptr<PixelBufferPool> pool;
    BoundedQueue<QueuedFrame> frames;
    BoundedQueue<QueuedFrame> pictures;
    std::atomic<bool> begun = false;
    std::int64_t nextFrame = 0;
};

void FileVideoInput::makePool() {
    // Pixels come back once they are converted; converted pictures, once the encoder lets go.
    constexpr std::int64_t held = queuedFrames + 1;
    constexpr std::int64_t heldByEncoder = queuedPictures + 20;
    const bool converted = settings.source == VideoSettings::Source::converted;
    pool = std::make_unique<PixelBufferPool>(
        converted ? encoderFormat(settings.codec) : PixelFormat::bgra, settings.width,
        settings.height, settings.framesInHand + held + (converted ? heldByEncoder : 0),
        settings.allocate);
}

void FileVideoInput::begin(std::int64_t frame) {
    nextFrame = frame;
    begun = true;
}

bool FileVideoInput::append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) {
    if (!isReadyForMoreMediaData())
        return false;
    const bool fits = buffer && buffer->width() == settings.width &&
                      buffer->height() == settings.height &&
                      (buffer->format() == PixelFormat::bgra ||
                       buffer->format() == encoderFormat(settings.codec));
    if (!fits)
        return false;
    if (time != MediaTime{nextFrame, static_cast<std::int32_t>(settings.framesPerSecond)}) {
        state.fail("A picture was appended out of its order.");
        return false;
    }
    if (!frames.tryPush({std::move(buffer), nextFrame}))
        return false;
    ++nextFrame;
    return true;
}

void FileVideoInput::convertFrames() {
    // Its size is bounded by the queue and by what the encoder holds.
    PixelBufferPool converted(encoderFormat(settings.codec), settings.width, settings.height,
                              std::numeric_limits<std::int64_t>::max());
    while (std::optional<QueuedFrame> frame = frames.pop()) {
        if (frame->picture->format() == PixelFormat::bgra) {
            std::shared_ptr<PixelBuffer> picture = converted.take();
            if (!picture)
                throw MovieError("Cannot allocate memory");
            convertColors(*frame->picture, *picture);
            frame->picture = std::move(picture);
        }
        if (!pictures.push(std::move(*frame)))
            return;
    }
    pictures.finish();
}

void FileVideoInput::encodePictures(const VideoPacketSink& sink) {
    while (std::optional<QueuedFrame> picture = pictures.pop())
        encoder->encode(std::move(picture->picture), picture->frame, sink);
    if (state.status() == MovieWriterStatus::writing)
        encoder->finish(sink);
}

class FileAudioInput : public AudioInput {
  public:
    FileAudioInput(const AudioSettings& settings, WriterState& state)
        : settings(settings), state(state), runs(queuedSampleRuns) {}

    std::string_view mediaType() const override { return "soun"; }
    bool isReadyForMoreMediaData() const override {
        return begun && runs.hasRoom() && state.status() == MovieWriterStatus::writing;
    }
    void markAsFinished() override { runs.finish(); }
    bool append(std::span<const float> samples, MediaTime time) override;

    void begin() { begun = true; }
    void abandon() { runs.abandon(); }
    void encodeSamples(const SoundPacketSink& sink);

    const AudioSettings settings;
    std::unique_ptr<SoundEncoder> encoder;

  private:
    WriterState& state;
    BoundedQueue<std::vector<float>> runs;
    std::atomic<bool> begun = false;
    std::int64_t nextSample = 0;
};

bool FileAudioInput::append(std::span<const float> samples, MediaTime time) {
    const auto channels = static_cast<std::size_t>(settings.channels);
    if (!isReadyForMoreMediaData() || samples.size() % channels != 0)
        return false;
    if (time != MediaTime{nextSample, static_cast<std::int32_t>(settings.sampleRate)}) {
        state.fail("Samples were appended out of their order.");
        return false;
    }
    if (!runs.tryPush({samples.begin(), samples.end()}))
        return false;
    nextSample += static_cast<std::int64_t>(samples.size() / channels);
    return true;
}

void FileAudioInput::encodeSamples(const SoundPacketSink& sink) {
    while (std::optional<std::vector<float>> run = runs.pop())
        encoder->encode(*run, sink);
    if (state.status() == MovieWriterStatus::writing)
        encoder->finish(sink);
}

class FileMovieWriter : public MovieWriter {
  public:
    FileMovieWriter(std::filesystem::path file, MovieFileType type)
        : path(std::move(file)), type(type) {}
    ~FileMovieWriter() override { cancelWriting(); }

    VideoInput* add(const VideoSettings& settings) override;
    AudioInput* add(const AudioSettings& settings) override;
    void setChapters(std::vector<MovieChapter> given) override { chapters = std::move(given); }
    bool startWriting() override;
    void startSession(MediaTime start) override;
    MovieWriterStatus status() const override { return state.status(); }
    std::optional<std::string> errorText() const override { return state.errorText(); }
    void finishWriting() override;
    void cancelWriting() override;

  private:
    bool mayAdd(bool isThere, std::optional<std::string> fault);
    void makeFile();
    void begin(std::int64_t firstFrame);
    void startThreads();
    template <typename Stage> void startThread(Stage stage);
    void fail(std::string text);
    void abandon();
    void joinThreads();

    const std::filesystem::path path;
    const MovieFileType type;
    WriterState state;
    std::unique_ptr<FileVideoInput> video;
    std::unique_ptr<FileAudioInput> audio;
    std::unique_ptr<MovieFile> file;
    PacketOrder packets;
    std::vector<MovieChapter> chapters;
    std::mutex threadsMutex; // cancelWriting and finishWriting may come from different threads
    std::vector<std::thread> threads;
};

bool FileMovieWriter::mayAdd(bool isThere, std::optional<std::string> fault) {
    if (isThere)
        fault = "The movie has such a track already.";
    if (state.status() != MovieWriterStatus::unknown)
        fault = "Tracks are added before writing starts.";
    if (fault)
        state.say(*fault);
    return !fault;
}

VideoInput* FileMovieWriter::add(const VideoSettings& settings) {
    if (!mayAdd(video != nullptr, settingsFault(settings, type)))
        return nullptr;
    video = std::make_unique<FileVideoInput>(settings, state);
    return video.get();
}

AudioInput* FileMovieWriter::add(const AudioSettings& settings) {
    if (!mayAdd(audio != nullptr, settingsFault(settings)))
        return nullptr;
    audio = std::make_unique<FileAudioInput>(settings, state);
    return audio.get();
}

bool FileMovieWriter::startWriting() {
    if (!state.change(MovieWriterStatus::unknown, MovieWriterStatus::writing))
        return false;
    try {
        makeFile();
    } catch (const MovieError& error) {
        state.fail(error.what());
        return false;
    }
    return true;
}

void FileMovieWriter::makeFile() {
    if (!video)
        throw MovieError("A movie needs a picture track.");
    video->encoder = std::make_unique<StretchEncoder>(video->settings);
    if (audio)
        audio->encoder = std::make_unique<SoundEncoder>(audio->settings);
    file = std::make_unique<MovieFile>(path, type);
    file->addVideo(video->settings, video->encoder->configuration(), video->encoder->delay());
    if (audio)
        file->addSound(audio->settings, audio->encoder->format());
    video->makePool();
}

void FileMovieWriter::startSession(MediaTime start) {
    if (state.status() != MovieWriterStatus::writing || !file)
        return;
    const std::int64_t stretch = stretchLength(video->settings);
    const bool fits = start.value >= 0 && start.value % stretch == 0 &&
                      (start.value == 0 || start.timescale == video->settings.framesPerSecond);
    try {
        if (!fits)
            throw MovieError("A part of this movie begins at a multiple of " +
                             std::to_string(stretch) + " frames, not at " +
                             std::to_string(start.value) + ".");
        begin(start.value);
    } catch (const MovieError& error) {
        fail(error.what());
    }
}

void FileMovieWriter::begin(std::int64_t firstFrame) {
    file->begin(firstFrame);
    packets.expect(video->settings, audio ? &audio->settings : nullptr);
    startThreads();
    video->begin(firstFrame);
    if (audio)
        audio->begin();
}

template <typename Stage> void FileMovieWriter::startThread(Stage stage) {
    threads.emplace_back([this, stage = std::move(stage)] {
        try {
            stage();
        } catch (const std::exception& error) {
            fail(error.what());
        }
    });
}

void FileMovieWriter::startThreads() {
    std::lock_guard lock(threadsMutex);
    startThread([this] { video->convertFrames(); });
    startThread([this] {
        video->encodePictures([this](VideoPacket packet) {
            if (state.status() != MovieWriterStatus::writing)
                throw MovieError("Nothing is being written."); // many frames may be left to encode
            packets.put(std::move(packet));
        });
        packets.finishVideo();
    });
    if (audio)
        startThread([this] {
            audio->encodeSamples([this](SoundPacket packet) { packets.put(std::move(packet)); });
            packets.finishSound();
        });
    startThread([this] {
        while (std::optional<MoviePacket> packet = packets.take())
            std::visit([this](const auto& kind) { file->write(kind); }, *packet);
    });
}

void FileMovieWriter::fail(std::string text) {
    state.fail(std::move(text));
    abandon();
}

void FileMovieWriter::abandon() {
    if (video)
        video->abandon();
    if (audio)
        audio->abandon();
    packets.abandon();
}

void FileMovieWriter::joinThreads() {
    std::lock_guard lock(threadsMutex);
    for (std::thread& thread : threads)
        thread.join();
    threads.clear();
}

void FileMovieWriter::finishWriting() {
    if (video)
        video->markAsFinished();
    if (audio)
        audio->markAsFinished();
    joinThreads();
    if (state.status() != MovieWriterStatus::writing)
        return;
    try {
        file->finish(chapters);
        state.change(MovieWriterStatus::writing, MovieWriterStatus::completed);
    } catch (const MovieError& error) {
        fail(error.what());
    }
}

void FileMovieWriter::cancelWriting() {
    state.change(MovieWriterStatus::writing, MovieWriterStatus::cancelled);
    if (state.status() == MovieWriterStatus::completed)
        return;
    abandon();
    joinThreads();
}

} // namespace

std::unique_ptr<MovieWriter> MovieWriter::make(std::filesystem::path file, MovieFileType type) {
    return std::make_unique<FileMovieWriter>(std::move(file), type);
}

} // namespace tarnwick
