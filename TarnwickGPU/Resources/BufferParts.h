// The Vulkan side of a buffer.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/Resources/Memory.h"

#include <cstddef>
#include <memory>

namespace tarnwick::gpu {

class Transfers;

struct BufferParts {
    // Contents are zero. Null if memory is exhausted or the device does not support the length.
    static std::unique_ptr<BufferParts> make(const DeviceRecord& device, Graveyard& graveyard,
                                             Transfers& transfers, std::size_t bytes,
                                             StorageMode storage);

    BufferParts(Graveyard& yard, const BufferMemory& made) : graveyard(yard), memory(made) {}
    ~BufferParts() { bury(graveyard, memory); }
    BufferParts(const BufferParts&) = delete;
    BufferParts& operator=(const BufferParts&) = delete;

    Graveyard& graveyard;
    std::shared_ptr<const void> keepsAlive; // the device
    BufferMemory memory;
};

} // namespace tarnwick::gpu
