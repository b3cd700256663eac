#include "tests/TarnwickRender/RecordingWriter.h"

#include <atomic>
#include <cstring>

namespace tarnwick::tests {
namespace {

Picture pictureOf(const PixelBuffer& buffer) {
    Picture picture{.width = static_cast<std::uint32_t>(buffer.width()),
                    .height = static_cast<std::uint32_t>(buffer.height())};
    picture.bytesPerRow = std::size_t{4} * picture.width;
    picture.bytes.resize(picture.bytesPerRow * picture.height);
    const auto perRow = static_cast<std::size_t>(buffer.layout().planes[0].bytesPerRow);
    for (std::size_t y = 0; y < picture.height; ++y)
        std::memcpy(&picture.bytes[y * picture.bytesPerRow], buffer.plane(0) + y * perRow,
                    picture.bytesPerRow);
    return picture;
}

class RecordingWriter : public MovieWriter {
  public:
    RecordingWriter(Recording& recording, MovieFileType type)
        : recording_(recording), video_(*this), audio_(*this) {
        recording.type = type;
    }
    ~RecordingWriter() override { recording_.status = status_; }

    VideoInput* add(const VideoSettings& settings) override {
        recording_.video = settings;
        return recording_.takesVideo ? &video_ : nullptr;
    }
    AudioInput* add(const AudioSettings& settings) override {
        recording_.sound = settings;
        recording_.hasSound = true;
        return recording_.takesAudio ? &audio_ : nullptr;
    }
    void setChapters(std::vector<MovieChapter>) override {}
    bool startWriting() override {
        const VideoSettings& settings = *recording_.video;
        if (recording_.hasPool)
            video_.pool = std::make_unique<PixelBufferPool>(
                PixelFormat::bgra, settings.width, settings.height, recording_.hasBuffers ? 2 : 0,
                settings.allocate);
        status_ = recording_.starts ? MovieWriterStatus::writing : MovieWriterStatus::failed;
        return recording_.starts;
    }
    void startSession(MediaTime) override {}
    MovieWriterStatus status() const override { return status_; }
    std::optional<std::string> errorText() const override { return recording_.error; }
    void finishWriting() override {
        recording_.isFinished = true;
        status_ = recording_.failsAtEnd ? MovieWriterStatus::failed : MovieWriterStatus::completed;
    }
    void cancelWriting() override { status_ = MovieWriterStatus::cancelled; }

  private:
    struct Video : VideoInput {
        explicit Video(RecordingWriter& writer) : writer(writer) {}
        std::string_view mediaType() const override { return "vide"; }
        bool isReadyForMoreMediaData() const override {
            const Recording& recording = writer.recording_;
            if (recording.failsAtFrame == static_cast<std::int64_t>(recording.pictures.size()))
                writer.status_ = MovieWriterStatus::failed;
            return recording.videoIsReady && writer.status_ == MovieWriterStatus::writing;
        }
        void markAsFinished() override {}
        PixelBufferPool* pixelBufferPool() override { return pool.get(); }
        bool append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) override {
            if (time.value == writer.recording_.refusesFrame)
                return false;
            writer.recording_.pictures.push_back(pictureOf(*buffer));
            writer.recording_.times.push_back(time.value);
            return true;
        }
        RecordingWriter& writer;
        std::unique_ptr<PixelBufferPool> pool;
    };
    struct Audio : AudioInput {
        explicit Audio(RecordingWriter& writer) : writer(writer) {}
        std::string_view mediaType() const override { return "soun"; }
        bool isReadyForMoreMediaData() const override { return writer.recording_.audioIsReady; }
        void markAsFinished() override {}
        bool append(std::span<const float> samples, MediaTime time) override {
            auto& all = writer.recording_.samples;
            const auto next =
                static_cast<std::int64_t>(all.size() / 2) - writer.recording_.sound.leadIn;
            if (time != MediaTime{next, 48000} || time.value == writer.recording_.refusesSample)
                return false;
            all.insert(all.end(), samples.begin(), samples.end());
            return true;
        }
        RecordingWriter& writer;
    };

    Recording& recording_;
    std::atomic<MovieWriterStatus> status_ = MovieWriterStatus::unknown;
    Video video_;
    Audio audio_;
};

} // namespace

MovieWriterFactory recordingWriters(Recording& recording) {
    return [&recording](const std::filesystem::path&, MovieFileType type) {
        return std::make_unique<RecordingWriter>(recording, type);
    };
}

} // namespace tarnwick::tests
