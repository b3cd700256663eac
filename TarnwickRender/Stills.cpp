#include "TarnwickRender/Stills.h"

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/TexturePicture.h"

#include <algorithm>

namespace tarnwick {
namespace {

std::unique_ptr<gpu::Texture> readableTarget(gpu::Device& device, std::int64_t width,
                                             std::int64_t height) {
    const auto size = PixelSize::of(width, height);
    if (!size)
        return nullptr;
    return device.newTexture({.format = ShaderProgram::pixelFormat,
                              .width = size->width,
                              .height = size->height,
                              .usage = {.shaderRead = true, .renderTarget = true},
                              .storage = gpu::StorageMode::shared});
}

} // namespace

std::unique_ptr<Stills> Stills::make(std::shared_ptr<const ShaderProgram> program,
                                     gpu::Device& device, std::int64_t width, std::int64_t height,
                                     ValuesAt valuesAt) {
    std::unique_ptr<Stills> stills(new Stills(std::move(program), device, std::move(valuesAt)));
    stills->queue_ = device.newCommandQueue();
    stills->target_ = stills->queue_ ? readableTarget(device, width, height) : nullptr;
    return stills->target_ && stills->makeFrames() ? std::move(stills) : nullptr;
}

bool Stills::makeFrames() {
    frames_ =
        ProgramFrames::make(program_, device_, target_->width(), target_->height(), valuesAt_);
    return frames_ != nullptr;
}

// Brings a simulation to the step before the frame's, and reports its progress.
bool Stills::warm(float time, const ParamValues& values, StillNews* news) {
    const ParticleSimulation* simulation = frames_->simulation();
    const std::int64_t goal = ParticleSimulation::steps(time);
    std::function<void()> tell;
    if (news != nullptr && news->warmed && simulation != nullptr && goal > 0)
        tell = [simulation, news, goal] {
            news->warmed(std::max<std::int64_t>(simulation->step(), 0), goal);
        };
    if (tell)
        tell();
    return frames_->warm(time, *queue_, values, tell);
}

bool Stills::render(float time, std::uint32_t frame, const ParamValues& values, Picture& picture,
                    StillNews* news, const ShaderInputs& inputs) {
    // A simulation that has stepped is that of an earlier still, which may have had other values.
    const bool isUsed =
        frames_ && frames_->simulation() != nullptr && frames_->simulation()->step() >= 0;
    if ((!frames_ || isUsed) && !makeFrames())
        return false;
    auto commands = warm(time, values, news) ? queue_->commandBuffer() : std::nullopt;
    const gpu::RenderPassDescriptor pass{
        .color = {.texture = target_.get(), .load = gpu::LoadAction::clear}};
    if (!commands ||
        !frames_->encode(
            *commands,
            {.moment = {.time = time, .frame = frame}, .values = values, .inputs = inputs},
            {.descriptor = pass}))
        return false;
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        return false;
    if (news != nullptr)
        news->hitLoopBudget = commands->hitLoopBudget() || frames_->hitLoopBudget();
    readPicture(*target_, picture);
    return true;
}

} // namespace tarnwick
