#include "TarnwickRender/StillRenderer.h"

#include "TarnwickRender/ShaderRun.h"

#include <limits>

namespace tarnwick {
namespace {

std::unique_ptr<gpu::Texture> readableTarget(gpu::Device& device, std::int64_t width,
                                             std::int64_t height) {
    constexpr std::int64_t widest = std::numeric_limits<std::uint32_t>::max();
    if (width < 1 || height < 1 || width > widest || height > widest)
        return nullptr;
    return device.newTexture({.format = ShaderProgram::pixelFormat,
                              .width = static_cast<std::uint32_t>(width),
                              .height = static_cast<std::uint32_t>(height),
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

Picture pixelsOf(const gpu::Texture& texture) {
    Picture picture{.width = texture.width(), .height = texture.height()};
    picture.bytesPerRow = std::size_t{4} * picture.width;
    picture.bytes.resize(picture.bytesPerRow * picture.height);
    texture.getBytes(picture.bytes.data(), picture.bytesPerRow,
                     {.width = picture.width, .height = picture.height}, 0);
    return picture;
}

} // namespace

std::optional<Picture> StillRenderer::render(const std::shared_ptr<const ShaderProgram>& program,
                                             gpu::Device& device, std::int64_t width,
                                             std::int64_t height, float time, std::uint32_t frame,
                                             const ParamValues& values) {
    const auto queue = device.newCommandQueue();
    const auto target = queue ? readableTarget(device, width, height) : nullptr;
    if (!target)
        return std::nullopt;
    const auto run =
        program->needsRun() ? ShaderRun::make(program, device, width, height) : nullptr;
    auto commands = queue->commandBuffer();
    if (!commands || (program->needsRun() && !run))
        return std::nullopt;
    const TWUniforms uniforms = stillUniforms(*target, time, frame);
    if (run)
        run->prepare(uniforms, *commands, values, std::numeric_limits<std::int64_t>::max());
    auto encoder = commands->renderCommandEncoder(
        {.color = {.texture = target.get(), .load = gpu::LoadAction::clear}});
    if (!encoder)
        return std::nullopt;
    program->draw(*encoder, uniforms, values, run.get());
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        return std::nullopt;
    return pixelsOf(*target);
}

} // namespace tarnwick
