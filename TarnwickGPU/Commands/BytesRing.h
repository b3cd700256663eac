// The memory that setBytes copies into. It belongs to a command buffer, is filled in order, and is
// reused from its start when the command buffer is recorded again.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <vector>

namespace tarnwick::gpu {

class BytesRing {
  public:
    struct Slice {
        VkBuffer buffer = VK_NULL_HANDLE; // null: out of memory
        VkDeviceSize offset = 0;
        std::byte* bytes = nullptr;
        VkDeviceAddress address = 0; // 0 if the device has no addresses
    };

    // `size` bytes at an offset with the alignment of every kind of descriptor.
    Slice take(const DeviceRecord& device, VkDeviceSize size);
    void reset();
    void bury(Graveyard& graveyard);

  private:
    std::vector<BufferMemory> chunks_;
    std::size_t chunk_ = 0; // the one in use
    VkDeviceSize used_ = 0; // bytes of it
};

} // namespace tarnwick::gpu
