#include "player/Drawing/Scene.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::int64_t longestLag = 60;  // steps or frames that playing catches up by itself
constexpr std::int64_t stepsOfFrame = 4; // of a simulation that is behind, while it plays
constexpr double frameSeconds = 1.0 / Transport::framesPerSecond;

double timeOf(std::int64_t frame) {
    return static_cast<double>(frame) * frameSeconds;
}

} // namespace

Scene::Scene(std::shared_ptr<const ShaderProgram> program, std::shared_ptr<gpu::Device> device,
             const PixelSize& size)
    : device_(std::move(device)), program_(std::move(program)), size_(size) {}

Scene::~Scene() = default;

std::unique_ptr<Scene> Scene::make(std::shared_ptr<const ShaderProgram> program,
                                   std::shared_ptr<gpu::Device> device, const PixelSize& size) {
    std::unique_ptr<Scene> made(new Scene(std::move(program), std::move(device), size));
    made->frames_ = ProgramFrames::make(
        made->program_, *made->device_, size.width, size.height,
        [scene = made.get()](double time) { return scene->settings_->valuesAt(time); });
    made->pictures_ =
        FeedbackFrames::make(*made->device_, size.width, size.height, ShaderProgram::pixelFormat);
    if (!made->frames_ || !made->pictures_)
        return nullptr;
    if (made->program_->usesInputs()) {
        made->tap_ = SoundTap::make(made->program_, *made->device_);
        made->levels_ = LevelInputs::make(*made->device_);
    }
    return made;
}

const gpu::Texture* Scene::picture() const {
    return pictures_->previous();
}

bool Scene::follow(const Scene& other, gpu::CommandQueue& queue) {
    const bool isBegun = goal_ || (lastStep() >= 0 && !isFollower_);
    if (isBegun || !frames_->follow(*other.frames_, *device_, queue))
        return false;
    followed_ = {other.picture(), other.frame_ > 0 ? &other.pictures_->current() : nullptr};
    frame_ = other.frame_;
    clock_ = other.clock_;
    restart_ = other.restart_;
    isFollower_ = hasState();
    return true;
}

bool Scene::hasState() const {
    return frames_->simulation() != nullptr || program_->readsPrevious();
}

std::int64_t Scene::lastStep() const {
    return frames_->simulation() != nullptr ? frames_->simulation()->step() : frame_;
}

// A time that goes on needs no warming: late frames are skipped, and late steps are caught up with.
bool Scene::needsWarming(const SceneMoment& moment) const {
    const std::int64_t now = Transport::frameOf(moment.time), last = lastStep();
    if (last < 0 || last > now)
        return true;
    if (moment.isPlaying && moment.clock == clock_)
        return false;
    const bool mayBeLate = frames_->simulation() != nullptr || moment.isPlaying;
    return now - last > (mayBeLate ? longestLag : 1);
}

// The goal remains the same while the clock runs on, so that a slow device reaches it.
void Scene::aim(const SceneMoment& moment) {
    const std::int64_t now = Transport::frameOf(moment.time);
    const bool isSame = goal_ && goal_->clock == moment.clock && goal_->frame <= now &&
                        goal_->settings == *moment.settings;
    if (isSame)
        return;
    if (lastStep() > now || (goal_ && goal_->settings != *moment.settings)) {
        frame_ = -1;
        frames_->restart();
    }
    goal_ = Goal{now, moment.clock, *moment.settings};
}

bool Scene::isWarm(const SceneMoment& moment) const {
    if (moment.replay != replay_ || moment.restart != restart_ || replayed_)
        return false;
    return !hasState() || (!goal_ && !needsWarming(moment));
}

std::optional<LiveNews::Warming> Scene::warm(const SceneMoment& moment, gpu::CommandQueue& queue) {
    takeOver(moment);
    settings_ = moment.settings;
    if (!failure_.empty())
        return std::nullopt;
    if (replayed_)
        return warmReplay(moment, queue);
    if (isWarm(moment))
        return std::nullopt;
    aim(moment);
    const auto warming = frames_->simulation() != nullptr ? warmSimulation(moment, queue)
                                                          : warmFeedback(moment, queue);
    if (!warming)
        goal_.reset();
    return warming;
}

// Takes over another replay, and computes the state again where that is wanted.
void Scene::takeOver(const SceneMoment& moment) {
    const bool isOther = moment.replay != replay_;
    if (isOther) {
        replay_ = moment.replay;
        replayed_.reset();
        failure_.clear();
        if (replay_)
            beginReplay(*moment.replayedInputs);
    }
    if (!isOther && moment.restart == restart_)
        return;
    restart_ = moment.restart;
    frames_->restart();
    frame_ = -1;
    goal_.reset();
    followed_.reset();
}

void Scene::beginReplay(const ReplayedInputs& inputs) {
    try {
        replayed_ = PerformedFrames::make(
            program_, *device_, size_.width, size_.height, replay_,
            PerformedSources::make(program_, *device_, size_.width, size_.height, inputs));
        if (!replayed_)
            failure_ = ProgramFrames::absence(*program_, *device_, size_.width, size_.height);
    } catch (const InputError& error) {
        failure_ = error.what();
    }
}

std::optional<LiveNews::Warming> Scene::warmReplay(const SceneMoment& moment,
                                                   gpu::CommandQueue& queue) {
    try {
        const auto progress = replayed_->prepare(moment.time, queue);
        if (progress)
            return LiveNews::Warming{.done = progress->done, .total = progress->total};
    } catch (const InputError& error) {
        failure_ = error.what();
    }
    return std::nullopt;
}

std::optional<LiveNews::Warming> Scene::warmSimulation(const SceneMoment& moment,
                                                       gpu::CommandQueue& queue) {
    const std::int64_t goal = goal_->frame;
    const std::int64_t from = std::max<std::int64_t>(lastStep(), 0);
    const std::int64_t next = std::min(goal, from + pace_.count());
    const double begin = currentMediaTime();
    const ParamValues values = moment.settings->valuesAt(moment.time);
    if (!frames_->warm(static_cast<float>(timeOf(next)), queue, values, {},
                       frameMoment(moment).mouse))
        return std::nullopt; // the device fails, which the next frame reports
    pace_.add(next - from, currentMediaTime() - begin);
    if (next == goal)
        return std::nullopt;
    return LiveNews::Warming{.done = next, .total = goal};
}

// Draws the frames before the goal, from the first one on.
std::optional<LiveNews::Warming> Scene::warmFeedback(const SceneMoment& moment,
                                                     gpu::CommandQueue& queue) {
    const std::int64_t goal = goal_->frame;
    if (frame_ < 0)
        pictures_->reset();
    const std::int64_t first = frame_ + 1, end = std::min(goal, first + pace_.count());
    const double begin = currentMediaTime();
    for (std::int64_t frame = first; frame < end; ++frame) {
        auto commands = encode({.time = timeOf(frame),
                                .mouse = moment.mouse,
                                .settings = moment.settings,
                                .channels = moment.channels,
                                .clock = moment.clock,
                                .levels = moment.levels,
                                .hearsOwnSound = moment.hearsOwnSound},
                               queue);
        if (!commands)
            return std::nullopt;
        commands->commit();
        commands->waitUntilCompleted();
        finish();
    }
    pace_.add(end - first, currentMediaTime() - begin);
    if (end == goal)
        return std::nullopt;
    return LiveNews::Warming{.done = end, .total = goal};
}

FrameMoment Scene::frameMoment(const SceneMoment& moment) const {
    FrameMoment::Mouse mouse;
    if (moment.mouse)
        mouse = {(*moment.mouse)[0] * static_cast<float>(size_.width),
                 (*moment.mouse)[1] * static_cast<float>(size_.height)};
    return {.time = static_cast<float>(episodeTime(moment)),
            .timeDelta = static_cast<float>(frameSeconds),
            .frame = static_cast<std::uint32_t>(Transport::frameOf(moment.time)),
            .mouse = mouse};
}

// Levels of other sounds than the own one come from the thread that hears them. The own sound is
// evaluated here where no frame can be late: in a pause, which shows what playing up to it shows,
// and in frames before it.
ShaderInputs Scene::soundInputs(const SceneMoment& moment) {
    const bool isExact = moment.hearsOwnSound && (!moment.isPlaying || !moment.levels);
    if (!isExact && moment.levels && levels_)
        return levels_->inputs(moment.levels->bands, moment.levels->spectrum);
    if (!isExact || !tap_)
        return ShaderInputs::none();
    const ParamValues& values = moment.settings->values; // keys do not change a sound
    const double before = std::exchange(heard_, moment.time);
    const bool isNext = moment.time > before && moment.time - before < 2 * frameSeconds;
    return moment.isPlaying || isNext ? tap_->inputs(moment.time, values)
                                      : tap_->playedInputs(moment.time, values);
}

ShaderInputs Scene::inputs(const SceneMoment& moment) {
    ShaderInputs inputs = soundInputs(moment);
    inputs.channels = moment.channels;
    inputs.previous = previous();
    return inputs;
}

const gpu::Texture* Scene::previous() const {
    if (!followed_)
        return pictures_->previous();
    return encoded_ == frame_ ? followed_->before : followed_->last;
}

std::optional<gpu::CommandBuffer> Scene::encode(const SceneMoment& moment,
                                                gpu::CommandQueue& queue) {
    settings_ = moment.settings;
    auto commands = queue.commandBuffer();
    if (!commands)
        return std::nullopt;
    encoded_ = replayed_ ? -1 : Transport::frameOf(moment.time);
    encodedClock_ = moment.clock;
    if (program_->readsPrevious() && !followed_ && encoded_ >= 0 && encoded_ == frame_)
        pictures_->goBack(frame_ > 0); // with other values or another pointer
    const FramePass pass{.descriptor = {.color = {.texture = &pictures_->current(),
                                                  .load = gpu::LoadAction::clear}}};
    const bool isEncoded =
        replayed_ ? encodeReplay(*commands, pass) : encodeLive(moment, *commands, pass);
    if (!isEncoded)
        return std::nullopt;
    return commands;
}

bool Scene::encodeReplay(gpu::CommandBuffer& commands, const FramePass& pass) {
    try {
        return replayed_->encode(commands, pass);
    } catch (const InputError& error) {
        failure_ = error.what();
        return false;
    }
}

// An episode that reads its previous frame has the time of the nearest frame, as in a performance.
double Scene::episodeTime(const SceneMoment& moment) const {
    if (replayed_)
        return replayed_->time();
    return program_->readsPrevious() ? timeOf(Transport::frameOf(moment.time)) : moment.time;
}

bool Scene::encodeLive(const SceneMoment& moment, gpu::CommandBuffer& commands,
                       const FramePass& pass) {
    const double time = episodeTime(moment);
    const ParamValues values = settings_->valuesAt(time);
    const ShaderInputs seen = program_->usesInputs() ? inputs(moment) : ShaderInputs::none();
    return frames_->encode(commands,
                           {.moment = frameMoment(moment),
                            .values = values,
                            .inputs = seen,
                            .stepLimit = stepsOfFrame},
                           pass);
}

void Scene::finish() {
    pictures_->advance();
    frame_ = encoded_;
    clock_ = encodedClock_;
    followed_.reset();
}

bool Scene::isBehind(const SceneMoment& moment) const {
    const ParticleSimulation* simulation = frames_->simulation();
    return !replayed_ && simulation != nullptr &&
           simulation->step() < ParticleSimulation::steps(moment.time);
}

} // namespace tarnwick::player
