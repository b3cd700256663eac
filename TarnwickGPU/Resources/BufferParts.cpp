#include "TarnwickGPU/Resources/BufferParts.h"

#include "TarnwickGPU/Resources/Residents.h"
#include "TarnwickGPU/Resources/Transfers.h"

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

std::unique_ptr<BufferParts> BufferParts::make(const DeviceRecord& device, Graveyard& graveyard,
                                               Transfers& transfers, std::size_t bytes,
                                               StorageMode storage) {
    const auto use = storage == StorageMode::private_ ? MemoryUse::gpuOnly : MemoryUse::readBack;
    const auto memory = makeBufferMemory(device, bytes, use);
    if (!memory)
        return nullptr;
    auto parts = std::make_unique<BufferParts>(device, graveyard, transfers, *memory);
    return clear(transfers, *memory) ? std::move(parts) : nullptr;
}

BufferParts::~BufferParts() {
    if (residents)
        residents->remove(memory);
    bury(graveyard, memory);
}

} // namespace tarnwick::gpu
