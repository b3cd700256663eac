#include "player/Thumbnails/ThumbnailDrawing.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/ProgramFrames.h"
#include "player/Compiling/LiveCompiler.h"
#include "player/Drawing/PictureCopy.h"
#include "player/Model/DocumentFile.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::size_t mostKnown = 4; // programs that are kept

constexpr const char* tooLong = "Drawing takes too long.";

double stillTime(const Episode& episode) {
    return std::isfinite(episode.meta.still) ? episode.meta.still : EpisodeMeta().still;
}

// The first error of an episode that does not compile.
std::string reasonOf(const CompileResult& result) {
    for (const Finding& finding : result.findings)
        if (finding.diagnostic.severity == Severity::error)
            return "Line " + std::to_string(finding.diagnostic.line) + ": " +
                   finding.diagnostic.message;
    return result.failure.empty() ? "The episode does not compile." : result.failure;
}

} // namespace

void ThumbnailDrawing::rest() {
    play_ = {};
    known_.clear();
    queue_.reset();
    device_.reset();
    worker_.reset();
}

bool ThumbnailDrawing::open() {
    if (device_ && device_->isLost())
        rest();
    if (!worker_)
        worker_ = std::make_unique<msl::SeparateWorker>();
    if (!device_)
        device_ = gpu::Device::systemDefault();
    if (device_ && !queue_)
        queue_ = device_->newCommandQueue();
    return queue_ != nullptr;
}

const ThumbnailDrawing::Source& ThumbnailDrawing::sourceOf(const ThumbnailTask& task) {
    if (source_.serial == task.serial)
        return source_;
    source_ = {.serial = task.serial};
    Settings settings = task.request.settings;
    source_.episode = task.request.episode;
    try {
        if (!source_.episode) {
            source_.episode = std::make_shared<const Episode>(
                Episode::of(readEpisodeText(task.request.file).text, task.request.file.string()));
            settings = readSettingsBeside(task.request.file).settings;
        }
        source_.settings =
            std::make_shared<const Settings>(settings.fitted(source_.episode->params()));
    } catch (const DocumentFileError& error) {
        source_.failure = error.what();
    }
    return source_;
}

const ThumbnailDrawing::Known&
ThumbnailDrawing::programOf(const std::shared_ptr<const Episode>& episode) {
    const auto found = std::ranges::find(known_, episode->text, &Known::text);
    if (found != known_.end())
        return *found;
    const CompileResult result = compiled({.episode = episode, .device = device_});
    if (known_.size() == mostKnown)
        known_.pop_front();
    return known_.emplace_back(
        Known{episode->text, result.program, result.program ? "" : reasonOf(result)});
}

std::optional<Thumbnail> ThumbnailDrawing::draw(const ThumbnailTask& task,
                                                const std::function<bool()>& isWanted) {
    const Source& source = sourceOf(task);
    Thumbnail made{.id = task.request.id, .frame = task.frame, .episode = source.episode};
    made.failure = source.failure;
    if (!made.failure.empty())
        return made;
    const double time = stillTime(*source.episode) + task.frame * Thumbnail::filmStep;
    const std::string name =
        thumbnailName(*source.episode, *source.settings, task.request.size, time);
    if (auto kept = store_.find(name)) {
        made.picture = *std::move(kept);
        return made;
    }
    made.failure = drawFrame(task, time, isWanted, made.picture);
    if (!isWanted())
        return std::nullopt;
    if (made.failure.empty())
        store_.keep(name, made.picture);
    return made;
}

// Returns the failure.
std::string ThumbnailDrawing::drawFrame(const ThumbnailTask& task, double time,
                                        const std::function<bool()>& isWanted, Picture& picture) {
    if (!open())
        return gpu::Device::absence();
    const Known& known = programOf(source_.episode);
    if (!known.program)
        return known.failure;
    const PixelSize& size = task.request.size;
    if (play_.serial != task.serial || !play_.scene)
        play_ = {task.serial, Scene::make(known.program, device_, size)};
    if (!play_.scene)
        return ProgramFrames::absence(*known.program, *device_, size.width, size.height);
    Scene& scene = *play_.scene;
    const SceneMoment moment{.time = time, .settings = source_.settings};
    const double begin = currentMediaTime();
    while (scene.warm(moment, *queue_)) {
        if (!isWanted())
            return {};
        if (device_->isLost())
            break;
        if (currentMediaTime() - begin > longestDrawing)
            return tooLong;
    }
    do {
        if (!drawOnce(scene, moment))
            return "The device failed while it was drawn.";
        if (currentMediaTime() - begin > longestDrawing)
            return tooLong;
    } while (scene.isBehind(moment) && isWanted());
    auto copy = copyOf(*scene.picture(), *device_, *queue_);
    if (!copy)
        return "The device failed while it was drawn.";
    picture = *std::move(copy);
    return {};
}

bool ThumbnailDrawing::drawOnce(Scene& scene, const SceneMoment& moment) {
    auto commands = scene.encode(moment, *queue_);
    if (!commands)
        return false;
    commands->commit();
    commands->waitUntilCompleted();
    scene.finish();
    return commands->status() == gpu::CommandBufferStatus::completed;
}

} // namespace tarnwick::player
