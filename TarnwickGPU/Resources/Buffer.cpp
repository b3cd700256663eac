#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/BufferParts.h"
#include "TarnwickGPU/Resources/TextureParts.h"

namespace tarnwick::gpu {

Buffer::Buffer(std::shared_ptr<BufferParts> parts) : parts_(std::move(parts)) {}
Buffer::~Buffer() = default;
std::size_t Buffer::length() const {
    return parts_->memory.size;
}
void* Buffer::contents() const {
    return parts_->memory.bytes;
}

std::uint64_t Buffer::gpuAddress() const {
    return parts_->memory.address;
}

std::unique_ptr<Texture> Buffer::newTexture(const TextureDescriptor& descriptor, std::size_t offset,
                                            std::size_t bytesPerRow) const {
    if (bytesPerRow < descriptor.width * bytesPerPixel(descriptor.format))
        return nullptr;
    auto made = TextureParts::over(parts_, descriptor, offset);
    return made ? std::make_unique<Texture>(std::move(made)) : nullptr;
}

} // namespace tarnwick::gpu
