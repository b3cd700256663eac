// Memory that a command buffer's setBytes calls copy into: written by the CPU in order, read by the
// GPU, and free again when the command buffer starts anew.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <vector>

namespace tarnwick::gpu {

class BytesRing {
  public:
    struct Slice {
        VkBuffer buffer = VK_NULL_HANDLE; // null: memory is out
        VkDeviceSize offset = 0;
        std::byte* bytes = nullptr;
    };

    // `size` bytes at an offset that suits every kind of descriptor.
    Slice take(const DeviceRecord& device, VkDeviceSize size);
    void reset();
    void bury(Graveyard& graveyard);

  private:
    std::vector<BufferMemory> chunks_;
    std::size_t chunk_ = 0; // the one in use
    VkDeviceSize used_ = 0; // bytes of it
};

} // namespace tarnwick::gpu
