// The Vulkan side of a buffer.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/Resources/Memory.h"

#include <cstddef>
#include <memory>

namespace tarnwick::gpu {

class Residents;
class Transfers;

struct BufferParts {
    // Contents are zero. Null if memory is exhausted or the device does not support the length.
    static std::unique_ptr<BufferParts> make(const DeviceRecord& device, Graveyard& graveyard,
                                             Transfers& transfers, std::size_t bytes,
                                             StorageMode storage);

    BufferParts(const DeviceRecord& record, Graveyard& yard, Transfers& copies,
                const BufferMemory& made)
        : device(record), graveyard(yard), transfers(copies), memory(made) {}
    ~BufferParts();
    BufferParts(const BufferParts&) = delete;
    BufferParts& operator=(const BufferParts&) = delete;

    const DeviceRecord& device;
    Graveyard& graveyard;
    Transfers& transfers;
    std::shared_ptr<const void> keepsAlive; // the device
    BufferMemory memory;
    Residents* residents = nullptr; // lists the buffer; null: not listed
};

} // namespace tarnwick::gpu
