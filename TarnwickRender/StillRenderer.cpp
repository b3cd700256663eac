#include "TarnwickRender/StillRenderer.h"

#include "TarnwickRender/PictureSize.h"
#include "TarnwickRender/ShaderRun.h"
#include "TarnwickRender/TexturePicture.h"

#include <algorithm>
#include <functional>

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

// A frame: the run's work, then the pass that shows it.
bool encode(const ShaderProgram& program, ShaderRun* run, const gpu::Texture& target,
            const TWUniforms& uniforms, const ParamValues& values, gpu::CommandBuffer& commands) {
    if (run != nullptr)
        run->prepare(uniforms, commands, values, ParticleSimulation::noLimit);
    auto encoder = commands.renderCommandEncoder(
        {.color = {.texture = &target, .load = gpu::LoadAction::clear}});
    if (!encoder)
        return false;
    program.draw(*encoder, uniforms, values, run);
    encoder->endEncoding();
    return true;
}

} // namespace

std::optional<Picture> StillRenderer::render(const std::shared_ptr<const ShaderProgram>& program,
                                             gpu::Device& device, std::int64_t width,
                                             std::int64_t height, float time, std::uint32_t frame,
                                             const ParamValues& values, StillNews* news) {
    const auto queue = device.newCommandQueue();
    const auto target = queue ? readableTarget(device, width, height) : nullptr;
    if (!target)
        return std::nullopt;
    const auto run =
        program->needsRun() ? ShaderRun::make(program, device, width, height) : nullptr;
    if (program->needsRun() && !run)
        return std::nullopt;
    if (run && !warm(*run, time, *queue, values, news))
        return std::nullopt;
    auto commands = queue->commandBuffer();
    const TWUniforms uniforms = stillUniforms(*target, time, frame);
    if (!commands || !encode(*program, run.get(), *target, uniforms, values, *commands))
        return std::nullopt;
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        return std::nullopt;
    if (news != nullptr)
        news->hitLoopBudget = commands->hitLoopBudget() ||
                              (run && run->simulation() && run->simulation()->hitLoopBudget());
    return pictureOf(*target);
}

} // namespace tarnwick
