// The Vulkan side of a buffer.
#pragma once

#include "TarnwickGPU/Vulkan/Memory.h"

#include <memory>
#include <utility>

namespace tarnwick::gpu {

struct BufferParts {
    std::shared_ptr<const void> keepsAlive; // the device
    Graveyard& graveyard;
    BufferMemory memory;

    BufferParts(std::shared_ptr<const void> device, Graveyard& yard, const BufferMemory& made)
        : keepsAlive(std::move(device)), graveyard(yard), memory(made) {}
    ~BufferParts() { bury(graveyard, memory); }
    BufferParts(const BufferParts&) = delete;
    BufferParts& operator=(const BufferParts&) = delete;
};

} // namespace tarnwick::gpu
