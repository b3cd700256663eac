#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Vulkan/BufferParts.h"
#include "TarnwickGPU/Vulkan/DeviceState.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::gpu {

namespace {

bool clear(Transfers& transfers, const BufferMemory& memory) {
    if (memory.bytes) {
        std::memset(memory.bytes, 0, memory.size);
        return true;
    }
    return transfers.run([&](VkCommandBuffer commands) {
        vkCmdFillBuffer(commands, memory.buffer, 0, VK_WHOLE_SIZE, 0);
    });
}

} // namespace

Buffer::Buffer(std::unique_ptr<BufferParts> parts) : parts_(std::move(parts)) {}
Buffer::~Buffer() = default;
std::size_t Buffer::length() const {
    return parts_->memory.size;
}
void* Buffer::contents() const {
    return parts_->memory.bytes;
}

// A longer one could be made on some devices, but a shader would read zeros beyond what a
// descriptor can name.
std::size_t Device::maxBufferLength() const {
    return std::min<VkDeviceSize>(state_->record.maxBufferSize,
                                  state_->record.limits.maxStorageBufferRange);
}

std::unique_ptr<Buffer> Device::newBuffer(std::size_t bytes, StorageMode storage) {
    if (isLost() || bytes > maxBufferLength())
        return nullptr;
    state_->graveyard.collect();
    const auto use = storage == StorageMode::private_ ? MemoryUse::gpuOnly : MemoryUse::readBack;
    const auto memory = makeBufferMemory(state_->record, bytes, use);
    if (!memory)
        return nullptr;
    auto parts = std::make_unique<BufferParts>(state_, state_->graveyard, *memory);
    if (!clear(state_->transfers, *memory))
        return nullptr;
    return std::make_unique<Buffer>(std::move(parts));
}

} // namespace tarnwick::gpu
