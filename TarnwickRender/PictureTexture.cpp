#include "TarnwickRender/PictureTexture.h"

namespace tarnwick {

bool PictureTexture::show(const Picture& picture, gpu::Device& device) {
    const std::size_t index = 1 - index_;
    auto& texture = textures_[index];
    if (!texture || texture->width() != picture.width || texture->height() != picture.height)
        texture = device.newTexture({.format = gpu::PixelFormat::bgra8Unorm,
                                     .width = picture.width,
                                     .height = picture.height,
                                     .usage = {.shaderRead = true}});
    if (!texture)
        return false;
    texture->replace({.width = picture.width, .height = picture.height}, 0, picture.bytes.data(),
                     picture.bytesPerRow);
    index_ = index;
    return true;
}

} // namespace tarnwick
