#include "TarnwickGPU/Resources/Residents.h"

#include "TarnwickGPU/Resources/Memory.h"

namespace tarnwick::gpu {

void Residents::add(const BufferMemory& buffer) {
    if (!buffer.address)
        return;
    const std::lock_guard lock(mutex_);
    buffers_[buffer.address] = {buffer.buffer, 0, buffer.size};
}

void Residents::remove(const BufferMemory& buffer) {
    const std::lock_guard lock(mutex_);
    buffers_.erase(buffer.address);
}

std::uint32_t Residents::add(const TextureParts& texture) {
    const std::lock_guard lock(mutex_);
    do
        ++last_;
    while (last_ == 0 || textures_.contains(last_));
    textures_[last_] = &texture;
    return last_;
}

void Residents::remove(std::uint32_t texture) {
    const std::lock_guard lock(mutex_);
    textures_.erase(texture);
}

std::optional<Residents::Range> Residents::bufferAt(VkDeviceAddress address) const {
    const std::lock_guard lock(mutex_);
    auto found = buffers_.upper_bound(address);
    if (found == buffers_.begin())
        return std::nullopt;
    --found;
    const VkDeviceSize offset = address - found->first;
    if (offset >= found->second.size)
        return std::nullopt;
    return Range{found->second.buffer, offset, found->second.size - offset};
}

const TextureParts* Residents::texture(std::uint32_t handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = textures_.find(handle);
    return found == textures_.end() ? nullptr : found->second;
}

} // namespace tarnwick::gpu
