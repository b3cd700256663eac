#include "player/Drawing/Scene.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr std::int64_t partOfWarming = 60; // steps or frames that are computed at once after a seek
constexpr std::int64_t longestLag = 60;    // steps or frames that playing catches up by itself
constexpr std::int64_t stepsOfFrame = 4;   // of a simulation that is behind, while it plays
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
    if (made->program_->usesInputs())
        made->tap_ = SoundTap::make(made->program_, *made->device_);
    return made;
}

const gpu::Texture* Scene::picture() const {
    return pictures_->previous();
}

std::optional<LiveNews::Warming> Scene::warm(const SceneMoment& moment, gpu::CommandQueue& queue) {
    settings_ = moment.settings;
    if (frames_->simulation() != nullptr)
        return warmSimulation(moment, queue);
    return program_->readsPrevious() ? warmFeedback(moment, queue) : std::nullopt;
}

// A simulation ahead of the time starts again.
std::optional<LiveNews::Warming> Scene::warmSimulation(const SceneMoment& moment,
                                                       gpu::CommandQueue& queue) {
    const std::int64_t goal = ParticleSimulation::steps(moment.time);
    const std::int64_t step = frames_->simulation()->step();
    if (step <= goal && goal - step <= longestLag)
        return std::nullopt;
    const std::int64_t from = step > goal ? 0 : std::max<std::int64_t>(step, 0);
    const std::int64_t next = std::min(goal, from + partOfWarming);
    const ParamValues values = moment.settings->valuesAt(moment.time);
    if (!frames_->warm(static_cast<float>(timeOf(next)), queue, values))
        return std::nullopt; // the device fails, which the next frame reports
    if (next == goal)
        return std::nullopt;
    return LiveNews::Warming{.done = next, .total = goal};
}

// Draws the frames before the one of the moment, from the first one on.
std::optional<LiveNews::Warming> Scene::warmFeedback(const SceneMoment& moment,
                                                     gpu::CommandQueue& queue) {
    const std::int64_t goal = Transport::frameOf(moment.time);
    const std::int64_t late = moment.isPlaying ? longestLag : 1; // frames
    if (frame_ >= 0 && frame_ <= goal && goal - frame_ <= late)
        return std::nullopt;
    if (frame_ > goal)
        frame_ = -1;
    if (frame_ < 0)
        pictures_->reset();
    const std::int64_t end = std::min(goal, frame_ + 1 + partOfWarming);
    for (std::int64_t frame = frame_ + 1; frame < end; ++frame) {
        auto commands = encode(
            {.time = timeOf(frame), .mouse = moment.mouse, .settings = moment.settings}, queue);
        if (!commands)
            return std::nullopt;
        commands->commit();
        commands->waitUntilCompleted();
        finish();
    }
    if (end == goal)
        return std::nullopt;
    return LiveNews::Warming{.done = end, .total = goal};
}

FrameMoment Scene::frameMoment(const SceneMoment& moment) const {
    FrameMoment::Mouse mouse;
    if (moment.mouse)
        mouse = {(*moment.mouse)[0] * static_cast<float>(size_.width),
                 (*moment.mouse)[1] * static_cast<float>(size_.height)};
    return {.time = static_cast<float>(moment.time),
            .timeDelta = static_cast<float>(frameSeconds),
            .frame = static_cast<std::uint32_t>(Transport::frameOf(moment.time)),
            .mouse = mouse};
}

ShaderInputs Scene::inputs(double time, const ParamValues& values) {
    ShaderInputs inputs = tap_ ? tap_->inputs(time, values) : ShaderInputs::none();
    inputs.previous = pictures_->previous();
    return inputs;
}

std::optional<gpu::CommandBuffer> Scene::encode(const SceneMoment& moment,
                                                gpu::CommandQueue& queue) {
    settings_ = moment.settings;
    auto commands = queue.commandBuffer();
    if (!commands)
        return std::nullopt;
    encoded_ = Transport::frameOf(moment.time);
    if (program_->readsPrevious() && encoded_ == frame_) // with other values or another pointer
        pictures_->goBack(frame_ > 0);
    const ParamValues values = settings_->valuesAt(moment.time);
    const ShaderInputs seen =
        program_->usesInputs() ? inputs(moment.time, values) : ShaderInputs::none();
    const gpu::RenderPassDescriptor pass{
        .color = {.texture = &pictures_->current(), .load = gpu::LoadAction::clear}};
    const bool isEncoded = frames_->encode(*commands,
                                           {.moment = frameMoment(moment),
                                            .values = values,
                                            .inputs = seen,
                                            .stepLimit = stepsOfFrame},
                                           {.descriptor = pass});
    if (!isEncoded)
        return std::nullopt;
    return commands;
}

void Scene::finish() {
    pictures_->advance();
    frame_ = encoded_;
}

bool Scene::isBehind(const SceneMoment& moment) const {
    const ParticleSimulation* simulation = frames_->simulation();
    return simulation != nullptr && simulation->step() < ParticleSimulation::steps(moment.time);
}

} // namespace tarnwick::player
