#include "TarnwickRender/Pictures/PixelBufferTextures.h"

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/Program/TargetFormats.h"

#include <stdexcept>

namespace tarnwick {
namespace {

// Whether the texture's memory has the layout of a pixel buffer.
bool canStandBehind(const gpu::Texture& texture) {
    const auto mapped = texture.mapped();
    const PixelLayout layout = pixelLayout(PixelFormat::bgra, texture.width(), texture.height());
    return mapped.bytes != nullptr &&
           mapped.bytesPerRow == static_cast<std::size_t>(layout.planes[0].bytesPerRow) &&
           mapped.length >= static_cast<std::size_t>(layout.bytes);
}

} // namespace

std::unique_ptr<PixelBufferTextures>
PixelBufferTextures::make(gpu::Device& device, std::int64_t width, std::int64_t height,
                          PixelFormat encoderFormat, ColorConversionPlace place) {
    const auto size = PixelSize::of(width, height);
    if (!size)
        return nullptr;
    const bool isConverted = place == ColorConversionPlace::gpu ||
                             (place == ColorConversionPlace::chosen && !device.info().isCPU);
    std::unique_ptr<PixelBufferTextures> textures(new PixelBufferTextures(device));
    textures->descriptor_ = {.format = TargetFormats::pixelFormat,
                             .width = size->width,
                             .height = size->height,
                             .usage = {.shaderRead = isConverted, .renderTarget = true},
                             .storage = isConverted ? gpu::StorageMode::private_
                                                    : gpu::StorageMode::shared};
    textures->drawn_ = device.newTexture(textures->descriptor_);
    if (!textures->drawn_)
        return nullptr;
    if (!isConverted) {
        if (canStandBehind(*textures->drawn_))
            textures->drawn_ = nullptr;
        return textures;
    }
    try {
        textures->conversion_ = std::make_unique<PictureConversion>(device, encoderFormat);
    } catch (const std::runtime_error&) {
        return nullptr; // the device is lost
    }
    return textures;
}

VideoSettings::Source PixelBufferTextures::source() const {
    return conversion_ ? VideoSettings::Source::converted : VideoSettings::Source::pixels;
}

PixelAllocator PixelBufferTextures::allocator() const {
    if (conversion_)
        return [&device = device_](std::size_t bytes) -> std::optional<PixelMemory> {
            const std::shared_ptr<gpu::Buffer> buffer = device.newBuffer(bytes);
            if (!buffer)
                return std::nullopt;
            return PixelMemory{static_cast<std::byte*>(buffer->contents()), buffer};
        };
    if (drawn_)
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
    return drawn_ ? *drawn_ : *static_cast<const gpu::Texture*>(buffer.memory().get());
}

bool PixelBufferTextures::encodeConversion(gpu::CommandBuffer& commands,
                                           const PixelBuffer& buffer) const {
    return !conversion_ ||
           conversion_->encode(commands, *drawn_,
                               *static_cast<const gpu::Buffer*>(buffer.memory().get()));
}

void PixelBufferTextures::finish(const PixelBuffer& buffer) const {
    if (!drawn_ || conversion_)
        return;
    drawn_->getBytes(buffer.plane(0),
                     static_cast<std::size_t>(buffer.layout().planes[0].bytesPerRow),
                     {.width = descriptor_.width, .height = descriptor_.height}, 0);
}

} // namespace tarnwick
