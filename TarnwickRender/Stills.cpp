#include "TarnwickRender/Stills.h"

#include "TarnwickRender/Pictures/PictureSize.h"
#include "TarnwickRender/TexturePicture.h"

#include <algorithm>

namespace tarnwick {
namespace {

std::unique_ptr<gpu::Texture> readableTarget(gpu::Device& device, std::int64_t width,
                                             std::int64_t height) {
    const auto size = PictureSize::of(width, height);
    if (!size)
        return nullptr;
    return device.newTexture({.format = ShaderProgram::pixelFormat,
                              .width = size->width,
                              .height = size->height,
                              .usage = {.shaderRead = true, .renderTarget = true},
                              .storage = gpu::StorageMode::shared});
}

TWUniforms stillUniforms(const gpu::Texture& target, float time, std::uint32_t frame) {
    const auto width = static_cast<float>(target.width());
    const auto height = static_cast<float>(target.height());
    return {.resolution = {width, height},
            .time = time,
            .mouse = {width * 0.5f, height * 0.5f},
            .frame = frame};
}

// Brings a simulation to the step before the frame's own, and tells of the way there.
bool warm(ShaderRun& run, float time, gpu::CommandQueue& queue, const ParamValues& values,
          StillNews* news) {
    const std::int64_t goal = ParticleSimulation::steps(time);
    std::function<void()> tell;
    if (news != nullptr && news->warmed && run.simulation() != nullptr && goal > 0)
        tell = [&run, news, goal] {
            news->warmed(std::max<std::int64_t>(run.simulation()->step(), 0), goal);
        };
    if (tell)
        tell();
    return run.warm(time, queue, values, {}, tell);
}

} // namespace

std::unique_ptr<Stills> Stills::make(std::shared_ptr<const ShaderProgram> program,
                                     gpu::Device& device, std::int64_t width, std::int64_t height) {
    std::unique_ptr<Stills> stills(new Stills(std::move(program), device));
    stills->queue_ = device.newCommandQueue();
    stills->target_ = stills->queue_ ? readableTarget(device, width, height) : nullptr;
    if (!stills->target_)
        return nullptr;
    if (stills->program_->needsRun()) {
        stills->run_ = ShaderRun::make(stills->program_, device, width, height);
        if (!stills->run_)
            return nullptr;
    }
    return stills;
}

// A simulation that has stepped is of the still before, which may have had other values.
bool Stills::prepareRun(float time, const ParamValues& values, StillNews* news) {
    if (!run_)
        return !program_->needsRun();
    if (run_->simulation() != nullptr && run_->simulation()->step() >= 0)
        run_ = ShaderRun::make(program_, device_, target_->width(), target_->height());
    if (!run_)
        return false;
    run_->setValuesAt(valuesAt_);
    return warm(*run_, time, *queue_, values, news);
}

// A frame: the run's work, then the pass that shows it.
bool Stills::encode(const TWUniforms& uniforms, const ParamValues& values,
                    const ShaderInputs& inputs, gpu::CommandBuffer& commands) {
    if (run_)
        run_->prepare(uniforms, commands, values, ParticleSimulation::noLimit);
    auto encoder = commands.renderCommandEncoder(
        {.color = {.texture = target_.get(), .load = gpu::LoadAction::clear}});
    if (!encoder)
        return false;
    program_->draw(*encoder, uniforms, values, run_.get(), &inputs);
    encoder->endEncoding();
    return true;
}

bool Stills::render(float time, std::uint32_t frame, const ParamValues& values, Picture& picture,
                    StillNews* news, const ShaderInputs& inputs) {
    if (!prepareRun(time, values, news))
        return false;
    auto commands = queue_->commandBuffer();
    if (!commands || !encode(stillUniforms(*target_, time, frame), values, inputs, *commands))
        return false;
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        return false;
    if (news != nullptr)
        news->hitLoopBudget = commands->hitLoopBudget() ||
                              (run_ && run_->simulation() && run_->simulation()->hitLoopBudget());
    readPicture(*target_, picture);
    return true;
}

} // namespace tarnwick
