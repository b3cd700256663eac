#include "TarnwickRender/PixelBufferTextures.h"

#include "TarnwickRender/PictureSize.h"
#include "TarnwickRender/ShaderProgram.h"

namespace tarnwick {
namespace {

// Whether a pixel buffer of the texture's size may lie in the texture's own memory.
bool canStandBehind(const gpu::Texture& texture) {
    const auto mapped = texture.mapped();
    const PixelLayout layout = pixelLayout(PixelFormat::bgra, texture.width(), texture.height());
    return mapped.bytes != nullptr &&
           mapped.bytesPerRow == static_cast<std::size_t>(layout.planes[0].bytesPerRow) &&
           mapped.length >= static_cast<std::size_t>(layout.bytes);
}

} // namespace

std::unique_ptr<PixelBufferTextures>
PixelBufferTextures::make(gpu::Device& device, std::int64_t width, std::int64_t height) {
    const auto size = PictureSize::of(width, height);
    if (!size)
        return nullptr;
    std::unique_ptr<PixelBufferTextures> textures(new PixelBufferTextures(device));
    textures->descriptor_ = {.format = ShaderProgram::pixelFormat,
                             .width = size->width,
                             .height = size->height,
                             .usage = {.shaderRead = false, .renderTarget = true},
                             .storage = gpu::StorageMode::shared};
    textures->readBack_ = device.newTexture(textures->descriptor_);
    if (!textures->readBack_)
        return nullptr;
    if (canStandBehind(*textures->readBack_))
        textures->readBack_ = nullptr;
    return textures;
}

PixelAllocator PixelBufferTextures::allocator() const {
    if (readBack_)
        return {};
    return [&device = device_,
            descriptor = descriptor_](std::size_t bytes) -> std::optional<PixelMemory> {
        const std::shared_ptr<gpu::Texture> texture = device.newTexture(descriptor);
        if (!texture || texture->mapped().length < bytes)
            return std::nullopt;
        return PixelMemory{texture->mapped().bytes, texture};
    };
}

const gpu::Texture& PixelBufferTextures::target(const PixelBuffer& buffer) const {
    return readBack_ ? *readBack_ : *static_cast<const gpu::Texture*>(buffer.memory().get());
}

void PixelBufferTextures::finish(const PixelBuffer& buffer) const {
    if (!readBack_)
        return;
    readBack_->getBytes(buffer.plane(0),
                        static_cast<std::size_t>(buffer.layout().planes[0].bytesPerRow),
                        {.width = descriptor_.width, .height = descriptor_.height}, 0);
}

} // namespace tarnwick
