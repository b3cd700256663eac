#include "TarnwickRender/TexturePicture.h"

namespace tarnwick {

void readPicture(const gpu::Texture& texture, Picture& picture) {
    picture.width = texture.width();
    picture.height = texture.height();
    picture.bytesPerRow = std::size_t{4} * picture.width;
    picture.bytes.resize(picture.bytesPerRow * picture.height);
    texture.getBytes(picture.bytes.data(), picture.bytesPerRow,
                     {.width = texture.width(), .height = texture.height()}, 0);
}

Picture pictureOf(const gpu::Texture& texture) {
    Picture picture;
    readPicture(texture, picture);
    return picture;
}

} // namespace tarnwick
