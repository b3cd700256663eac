#include "programs/Movies/WalkthroughMovie.h"

#include "TarnwickCore/Movies/ExportPlan.h"
#include "TarnwickCore/Walkthroughs/WalkthroughTimeline.h"
#include "TarnwickRender/SoundFileTap.h"
#include "TarnwickRender/SoundTap.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSound.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Movies/MovieExport.h"

namespace tarnwick {
namespace {

// A page is whole frames long.
WalkthroughTimeline timelineOf(const std::vector<WalkthroughStage>& stages,
                               const Arguments& arguments, std::int64_t fps) {
    const auto frames =
        static_cast<double>(ExportPlan::frameCount(arguments.numberOf("--page-seconds"), fps));
    WalkthroughTimeline timeline{.pageSeconds = frames / static_cast<double>(fps)};
    for (const WalkthroughStage& stage : stages)
        timeline.pageCounts.push_back(std::ssize(stage.pages));
    if (timeline.total() == 0)
        misuse("No stage adds a line, so there is no page to show.");
    checkMovieLength(timeline.total());
    return timeline;
}

std::shared_ptr<const gpu::Texture> textureOf(const Picture& picture, gpu::Device& device) {
    std::shared_ptr<gpu::Texture> texture = device.newTexture(
        {.format = ShaderProgram::pixelFormat, .width = picture.width, .height = picture.height});
    if (!texture)
        failure("The device has no room for all pages of the walkthrough.");
    texture->replace({.width = picture.width, .height = picture.height}, 0, picture.bytes.data(),
                     picture.bytesPerRow);
    return texture;
}

// The data of the movie.
struct StagedMovie {
    const WalkthroughRenderer& renderer;
    const std::vector<WalkthroughStage>& stages;
    const WalkthroughTimeline& timeline;
    double start = 0;     // seconds of the episode at the first frame
    double halfFrame = 0; // seconds
    gpu::Device& device;

    FrameLayout layoutOf(std::size_t stage) const {
        FrameLayout layout{.picture = renderer.picture(),
                           .background = WalkthroughRenderer::background};
        const auto pages = renderer.pages(stages[stage], stages.size());
        for (std::size_t page = 0; page < stages[stage].pages.size(); ++page)
            layout.overlays.push_back(textureOf(pages.overlay(page), device));
        // In the middle of the frame, so that rounding does not change the page a frame late.
        layout.overlayIndexAt = [&timeline = timeline, stage,
                                 from = startOf(stage) - halfFrame](double time) {
            return timeline.page(static_cast<std::int64_t>(stage), time - from);
        };
        return layout;
    }

    // The start of the stage's program.
    double startOf(std::size_t stage) const {
        return start + timeline.start(static_cast<std::int64_t>(stage));
    }
};

std::vector<MovieChapter> chaptersOf(const StagedMovie& staged) {
    std::vector<MovieChapter> chapters;
    for (std::size_t stage = 0; stage < staged.stages.size(); ++stage)
        if (!staged.stages[stage].pages.empty())
            chapters.push_back({.start = staged.startOf(stage) - staged.start,
                                .title = staged.stages[stage].title});
    return chapters;
}

std::shared_ptr<FrameInputs> soundOf(const std::shared_ptr<const ShaderProgram>& program,
                                     gpu::Device& device, const std::filesystem::path& file) {
    try {
        if (!file.empty())
            return SoundFileTap::make(file, device);
    } catch (const InputError& error) {
        failure(error.what());
    }
    return SoundTap::make(program, device);
}

} // namespace

void exportWalkthrough(const EpisodeWalkthrough& walkthrough, const Arguments& arguments) {
    const MovieTarget movie = movieTargetOf(arguments);
    const ExportPreset& preset = movie.preset;
    const WalkthroughRenderer renderer = walkthroughRenderer(preset.width, preset.height);
    const std::vector<WalkthroughStage> stages = walkthrough.stages(renderer);
    const WalkthroughTimeline timeline = timelineOf(stages, arguments, preset.fps);
    const EpisodeAudio audio = episodeAudioOf(arguments);
    const bool sound = exportSoundOf(arguments, walkthrough.episode()) && audio.hasOwn();
    const auto stagedOn = [&](gpu::Device& device) {
        return StagedMovie{.renderer = renderer,
                           .stages = stages,
                           .timeline = timeline,
                           .start = arguments.numberOf("--start"),
                           .halfFrame = 0.5 / static_cast<double>(preset.fps),
                           .device = device};
    };
    const auto segmentsOn = [&](gpu::Device& device) {
        std::vector<ExportSegment> made;
        const auto programs = [&] {
            ProgressBar bar("");
            return programsOf(walkthrough, device, bar);
        }();
        const StagedMovie staged = stagedOn(device);
        // Stages with Inputs hear the episode's sound, and show its channels.
        ExportPreset shown = preset;
        shown.width = renderer.picture().width;
        shown.height = renderer.picture().height;
        std::shared_ptr<FrameInputs> inputs =
            frameInputsOf(programs.back(), device, shown,
                          channelSourcesOf(walkthrough.channels, device), audio.file);
        if (!inputs) // an earlier stage may have Inputs
            inputs = soundOf(programs.back(), device, audio.file);
        for (std::size_t stage = 0; stage < stages.size(); ++stage) {
            if (stages[stage].pages.empty())
                continue;
            made.push_back({.program = programs[stage],
                            .timeline = walkthrough.settings,
                            .start = staged.startOf(stage),
                            .duration = timeline.duration(static_cast<std::int64_t>(stage)),
                            .watermark = arguments.has("--watermark"),
                            .sound = sound,
                            .soundFile = movieFileOf(audio, arguments),
                            .layout = staged.layoutOf(stage),
                            .soundProgram = programs.back(),
                            .inputs = inputs});
        }
        return made;
    };
    DrawingDevice device;
    const auto segments = device.with([&](gpu::Device& present) {
        auto made = segmentsOn(present);
        if (sound)
            checkHeard({.episode = walkthrough.episode(),
                        .values = walkthrough.settings.values,
                        .start = arguments.numberOf("--start"),
                        .duration = timeline.total()},
                       present);
        return made;
    });
    exportMovie(segments, movie, *device, walkthrough.episode().path,
                {.chapters = chaptersOf(stagedOn(*device)), .reopen = [&] {
                     auto next = drawingDevice();
                     return ExportStage{next, segmentsOn(*next)};
                 }});
}

} // namespace tarnwick
