#include "TarnwickRender/VideoExporter.h"

#include "TarnwickRender/Movies/MovieFrames.h"
#include "TarnwickRender/Movies/MovieSound.h"

#include <algorithm>
#include <future>
#include <limits>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::int64_t keyFrameSeconds = 2; // between key frames, at most
constexpr double alphaQuality = 0.9;

[[noreturn]] void cannotStart(const std::string& reason) {
    throw ExportError(ExportError::Setup{reason});
}

[[noreturn]] void writingFailed(const std::string& reason) {
    throw ExportError(ExportError::Writer{reason});
}

void checkSoundRate(std::int64_t fps) {
    if (fps < 1 || ShaderAssembler::sampleRate % fps != 0)
        cannotStart(std::to_string(fps) + " fps does not divide the audio rate");
}

void checkLayout(const FrameLayout& layout, const ExportPreset& preset) {
    const auto count = static_cast<std::int64_t>(layout.overlays.size());
    if (count > 0 && (layout.overlayIndex < 0 || layout.overlayIndex >= count))
        cannotStart("overlay " + std::to_string(layout.overlayIndex) + " is wanted of " +
                    std::to_string(count) + ", counted from 0");
    const FrameLayout::Area& area = layout.picture;
    if (area.x < 0 || area.y < 0 || area.width < 1 || area.height < 1 ||
        area.width > preset.width - area.x || area.height > preset.height - area.y)
        cannotStart("a layout's picture does not lie within the frame");
}

FrameRange rangeOf(const ExportDetails& details, const ExportTimeline& timeline,
                   const VideoSettings& settings) {
    const FrameRange frames = details.frames.value_or(FrameRange{0, timeline.frameCount()});
    if (frames.first < 0 || frames.first >= frames.end || frames.end > timeline.frameCount())
        cannotStart("the part does not lie within the movie");
    if (frames.first % stretchLength(settings) != 0)
        cannotStart("a part begins at a multiple of " + std::to_string(stretchLength(settings)) +
                    " frames");
    return frames;
}

// The writer, and its tracks, which it owns.
struct Tracks {
    std::unique_ptr<MovieWriter> writer;
    VideoInput* video = nullptr;
    AudioInput* audio = nullptr; // null for a movie without sound
};

Tracks startedTracks(const ExportTimeline& timeline, const ExportPreset& preset,
                     const VideoSettings& settings, const FrameRange& frames,
                     const std::filesystem::path& file, const ExportDetails& details) {
    std::error_code ignored; // the writer reports a file that it cannot replace
    std::filesystem::remove(file, ignored);
    Tracks tracks;
    tracks.writer = details.makeWriter(file, videoCodecRow(preset.codec).fileType);
    tracks.video = tracks.writer->add(settings);
    if (tracks.video == nullptr)
        cannotStart("the writer rejected the video settings");
    const bool isHeardAtAll =
        std::any_of(timeline.entries.begin(), timeline.entries.end(),
                    [](const ExportTimeline::Entry& entry) { return isHeard(*entry.segment); });
    if (isHeardAtAll && frames.first == 0) {
        tracks.audio = tracks.writer->add(soundSettings(timeline));
        if (tracks.audio == nullptr)
            cannotStart("the writer rejected the audio settings");
    }
    if (frames.first == 0)
        tracks.writer->setChapters(details.chapters);
    if (!tracks.writer->startWriting())
        throw writerError(*tracks.writer);
    tracks.writer->startSession({frames.first, static_cast<std::int32_t>(preset.fps)});
    return tracks;
}

// Waits for `task` and calls `goOn` every 100 ms, which throws to stop.
void await(std::future<void>& task, const std::function<void()>& goOn) {
    while (task.wait_for(std::chrono::milliseconds(100)) != std::future_status::ready)
        goOn();
    task.get();
}

// The sound's task. The destructor waits for it.
class SoundTask {
  public:
    template <typename Work>
    SoundTask(ExportState& state, const Work& work)
        : state_(state), task_(std::async(std::launch::async, work)) {}
    ~SoundTask() {
        if (task_.valid())
            state_.fail(ExportError(ExportError::Cancelled{}));
    } // the future waits
    SoundTask(const SoundTask&) = delete;
    SoundTask& operator=(const SoundTask&) = delete;

    void await(const std::function<void()>& goOn) { tarnwick::await(task_, goOn); }

  private:
    ExportState& state_;
    std::future<void> task_;
};

// The pictures of a movie on one ground.
struct PictureGround {
    std::shared_ptr<const ExportGround> ground;
    std::unique_ptr<PixelBufferTextures> textures;
    std::unique_ptr<MovieFrames> movie;

    gpu::Device& device() const { return *ground->stage.device; }
};

// Throws ExportError.
PictureGround pictureGround(std::shared_ptr<const ExportGround> ground, const ExportPreset& preset,
                            const PixelSize& size, ColorConversionPlace conversion) {
    PictureGround made{.ground = std::move(ground)};
    made.movie = std::make_unique<MovieFrames>(made.ground->timeline, made.device(), size);
    made.textures = PixelBufferTextures::make(made.device(), preset.width, preset.height,
                                              videoCodecRow(preset.codec).pixelFormat, conversion);
    if (!made.textures)
        cannotStart("no texture cache");
    made.movie->makeLoopTextures();
    return made;
}

// The pictures' task. The writer has its tracks, and `state` the ground, from the start on.
class PictureTask {
  public:
    // On a new device, for the frame `index`. Throws.
    using Renew = std::function<PictureGround(std::int64_t index)>;

    PictureTask(PictureGround& pictures, const Tracks& tracks, ExportState& state,
                const ExportDetails& details, Renew renew)
        : pictures_(pictures), tracks_(tracks), state_(state), details_(details),
          renew_(std::move(renew)) {}

    // Ends early if the state has an error. `goOn` gets the number of frames done, and throws to
    // stop.
    void write(const FrameRange& frames, std::int64_t fps,
               const std::function<void(std::int64_t done)>& goOn) {
        goOn(0); // the first frame may take minutes
        for (std::int64_t index = frames.first; index < frames.end; ++index) {
            const std::int64_t before = index - frames.first;
            auto buffer = drawn(index, [&] { goOn(before); });
            if (!waitUntilReady(*tracks_.video, *tracks_.writer, state_, details_.patience))
                return;
            if (!tracks_.video->append(std::move(buffer), {index, static_cast<std::int32_t>(fps)}))
                refused(index);
            state_.setPictures(index + 1);
            goOn(before + 1);
        }
        state_.setPictures(std::numeric_limits<std::int64_t>::max() / 2);
    }

    // Opens the device again if it was lost and the sound waits for another.
    void serveSound(std::int64_t lastFrame) {
        if (state_.isGroundWanted() && pictures_.device().isLost())
            goOnAfterLoss(lastFrame);
    }

  private:
    std::shared_ptr<const PixelBuffer> drawn(std::int64_t index,
                                             const std::function<void()>& meanwhile) {
        while (true) {
            try {
                auto buffer = drawnOnce(index, meanwhile);
                if (!pictures_.device().isLost())
                    return buffer;
            } catch (const ExportError& error) {
                if (error.isCancelled() || !pictures_.device().isLost() || !details_.reopen)
                    throw;
            }
            goOnAfterLoss(index);
        }
    }

    void goOnAfterLoss(std::int64_t index) {
        if (!details_.reopen)
            throw ExportError(ExportError::Render{index});
        if (lossAt_ == index)
            throw ExportError(ExportError::DeviceLost{index});
        lossAt_ = index;
        PictureGround next = renew_(index);
        pictures_.movie = std::move(next.movie);
        pictures_.textures = std::move(next.textures);
        pictures_.ground = std::move(next.ground);
        if (PixelBufferPool* pool = tracks_.video->pixelBufferPool())
            pool->renew(pictures_.textures->allocator());
        state_.setGround(pictures_.ground);
    }

    std::shared_ptr<const PixelBuffer> drawnOnce(std::int64_t index,
                                                 const std::function<void()>& meanwhile) {
        PixelBufferPool* pool = tracks_.video->pixelBufferPool();
        if (pool == nullptr)
            writingFailed("no pixel buffer pool");
        auto buffer = pool->take();
        if (!buffer)
            writingFailed("could not get a pixel buffer");
        const PixelBufferTextures& textures = *pictures_.textures;
        pictures_.movie->draw(index, textures.target(*buffer), meanwhile,
                              [&](gpu::CommandBuffer& commands) {
                                  return textures.encodeConversion(commands, *buffer);
                              });
        textures.finish(*buffer);
        return buffer;
    }

    [[noreturn]] void refused(std::int64_t index) {
        if (tracks_.writer->status() == MovieWriterStatus::failed)
            throw writerError(*tracks_.writer);
        writingFailed("append failed at frame " + std::to_string(index));
    }

    PictureGround& pictures_;
    const Tracks& tracks_;
    ExportState& state_;
    const ExportDetails& details_;
    Renew renew_;
    std::optional<std::int64_t> lossAt_; // the frame at which the device was lost last
};

// The encoder may still have many frames.
void finish(MovieWriter& writer, const std::function<void()>& goOn) {
    auto finishing = std::async(std::launch::async, [&] { writer.finishWriting(); });
    try {
        await(finishing, goOn);
    } catch (const ExportError&) {
        writer.cancelWriting();
        throw;
    }
    if (writer.status() != MovieWriterStatus::completed)
        throw writerError(writer);
}

} // namespace

std::int64_t VideoExporter::frameCount(std::span<const ExportSegment> segments, std::int64_t fps) {
    return ExportTimeline::of(segments, fps).frameCount();
}

VideoSettings VideoExporter::videoSettings(const ExportPreset& preset) {
    return {.codec = preset.codec,
            .width = preset.width,
            .height = preset.height,
            .framesPerSecond = preset.fps,
            .averageBitRate = preset.bitrate,
            .maxKeyFrameInterval = keyFrameSeconds * preset.fps,
            .alphaQuality = alphaQuality};
}

void VideoExporter::export_(std::span<const ExportSegment> segments, const ExportPreset& preset,
                            gpu::Device& device, const std::filesystem::path& file,
                            const Progress& progress, const ExportDetails& details) {
    const auto first = std::make_shared<const ExportGround>(
        ExportStage{.device = {std::shared_ptr<void>(), &device}, // the caller keeps it
                    .segments = {segments.begin(), segments.end()}},
        preset.fps);
    const ExportTimeline& timeline = first->timeline;
    checkSoundRate(preset.fps);
    for (const ExportSegment& segment : segments)
        if (segment.layout)
            checkLayout(*segment.layout, preset);
    VideoSettings settings = videoSettings(preset);
    settings.speed = details.speed;
    const FrameRange frames = rangeOf(details, timeline, settings);
    const auto size = PixelSize::of(preset.width, preset.height);
    if (!size)
        cannotStart("a frame has no pixels");
    const auto reopened = [&](std::int64_t frame, ColorConversionPlace conversion) {
        const auto next = std::make_shared<const ExportGround>(details.reopen(), preset.fps);
        try {
            return pictureGround(next, preset, *size, conversion);
        } catch (const ExportError&) {
            if (next->stage.device->isLost())
                throw ExportError(ExportError::DeviceLost{frame});
            throw;
        }
    };
    PictureGround pictures = [&] {
        try {
            return pictureGround(first, preset, *size, details.colorConversion);
        } catch (const ExportError&) {
            if (!device.isLost() || !details.reopen)
                throw;
        }
        return reopened(frames.first, details.colorConversion);
    }();
    settings.source = pictures.textures->source();
    settings.allocate = pictures.textures->allocator();
    const Tracks tracks = startedTracks(timeline, preset, settings, frames, file, details);

    ExportState state;
    state.setGround(pictures.ground);
    auto noteNews = [&] {
        if (pictures.movie->hitLoopBudget())
            state.noteLoopBudget();
        if (details.news != nullptr)
            details.news->hitLoopBudget = state.hitLoopBudget();
    };
    auto goOn = [&](std::int64_t done) {
        noteNews();
        if (!progress(done, frames.count()))
            throw ExportError(ExportError::Cancelled{});
    };
    auto goOnAtTheEnd = [&] { goOn(frames.count()); };
    // Another device converts colours where the first one did.
    const auto conversion = settings.source == VideoSettings::Source::converted
                                ? ColorConversionPlace::gpu
                                : ColorConversionPlace::writer;
    PictureTask task(pictures, tracks, state, details, [&](std::int64_t index) {
        noteNews();
        return reopened(index, conversion);
    });
    SoundTask sound(state, [&, ground = pictures.ground] {
        if (tracks.audio != nullptr)
            writeSound(ground, *tracks.audio, *tracks.writer, state, details.patience);
    });
    try {
        task.write(frames, preset.fps, goOn);
        tracks.video->markAsFinished();
        sound.await([&] {
            goOnAtTheEnd();
            task.serveSound(frames.end);
        });
    } catch (const ExportError& error) {
        state.fail(error);
    } catch (const InputError& error) {
        state.fail(ExportError(ExportError::Input{error.what()}));
    }
    noteNews();
    state.throwIfFailed(); // the writer is not finished then
    finish(*tracks.writer, goOnAtTheEnd);
}

void VideoExporter::export_(const std::shared_ptr<const ShaderProgram>& program,
                            gpu::Device& device, const ExportPlan& plan, const ParamValues& values,
                            bool watermark, const std::filesystem::path& file,
                            const Progress& progress, const ExportDetails& details) {
    const ExportSegment segment{.program = program,
                                .timeline = Settings{.values = values},
                                .start = plan.start,
                                .duration = plan.duration,
                                .watermark = watermark,
                                .sound = true};
    export_(std::span(&segment, 1), plan.preset, device, file, progress, details);
}

} // namespace tarnwick
