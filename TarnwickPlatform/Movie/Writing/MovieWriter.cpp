// The writer of files. Frames pass three threads, each with a bounded queue before it, so that
// conversion, encoding and writing overlap; sound has its own thread:
//
//   append ── frames ── converting ── pictures ── encoding ──┐
//   append ── samples ── encoding ───────────────────────────┴── packets ── writing
//
// An error is recorded in the state and abandons the queues, which ends all threads.

#include "TarnwickPlatform/Movie/MovieWriter.h"

#include "TarnwickPlatform/Movie/Encoders/StretchEncoder.h"
#include "TarnwickPlatform/Movie/Files/MovieFile.h"
#include "TarnwickPlatform/Movie/MovieError.h"
#include "TarnwickPlatform/Movie/SettingsError.h"
#include "TarnwickPlatform/Movie/Writing/FileAudioInput.h"
#include "TarnwickPlatform/Movie/Writing/FileVideoInput.h"
#include "TarnwickPlatform/Movie/Writing/PacketOrder.h"
#include "TarnwickPlatform/Movie/Writing/WriterState.h"

#include <thread>
#include <utility>

namespace tarnwick {

namespace {

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
    std::mutex threadsMutex; // cancelWriting and finishWriting may be called on different threads
    std::vector<std::thread> threads;
};

bool FileMovieWriter::mayAdd(bool isThere, std::optional<std::string> fault) {
    if (isThere)
        fault = "The movie already has this track.";
    if (state.status() != MovieWriterStatus::unknown)
        fault = "Tracks are added before writing starts.";
    if (fault)
        state.say(*fault);
    return !fault;
}

VideoInput* FileMovieWriter::add(const VideoSettings& settings) {
    if (!mayAdd(video != nullptr, settingsError(settings, type)))
        return nullptr;
    video = std::make_unique<FileVideoInput>(settings, state);
    return video.get();
}

AudioInput* FileMovieWriter::add(const AudioSettings& settings) {
    if (!mayAdd(audio != nullptr, settingsError(settings)))
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
                throw MovieError("Nothing is being written."); // ends the stage early
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
