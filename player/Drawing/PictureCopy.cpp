#include "player/Drawing/PictureCopy.h"

#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/TexturePicture.h"

namespace tarnwick::player {

std::optional<Picture> copyOf(const gpu::Texture& texture, gpu::Device& device,
                              gpu::CommandQueue& queue) {
    const auto copy = device.newTexture({.format = ShaderProgram::pixelFormat,
                                         .width = texture.width(),
                                         .height = texture.height(),
                                         .usage = {.shaderRead = true, .renderTarget = true}});
    auto commands = copy ? queue.commandBuffer() : std::nullopt;
    auto encoder = commands ? commands->blitCommandEncoder() : std::nullopt;
    if (!encoder)
        return std::nullopt;
    encoder->copy(texture, {.width = texture.width(), .height = texture.height()}, *copy, 0, 0);
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        return std::nullopt;
    return pictureOf(*copy);
}

} // namespace tarnwick::player
