#include "TarnwickRender/TexturePicture.h"

namespace tarnwick {

Picture pictureOf(const gpu::Texture& texture) {
    Picture picture{.width = texture.width(), .height = texture.height()};
    picture.bytesPerRow = std::size_t{4} * picture.width;
    picture.bytes.resize(picture.bytesPerRow * picture.height);
    texture.getBytes(picture.bytes.data(), picture.bytesPerRow,
                     {.width = picture.width, .height = picture.height}, 0);
    return picture;
}

} // namespace tarnwick
