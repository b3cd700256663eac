// Where the shaders of one command buffer say that an invocation ran out of its loop budget.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <vulkan/vulkan.h>

#include <cstdint>

namespace tarnwick::gpu {

class LoopReports {
  public:
    bool make(const DeviceRecord& device); // false when memory is out
    void reset();
    void bury(Graveyard& graveyard);

    // The word for the next draw or dispatch: each has its own for as long as there are some, so
    // that two of them do not write to one place without a barrier.
    VkDescriptorBufferInfo next();
    bool anyIsSet() const; // the GPU is done

  private:
    BufferMemory memory_;
    VkDeviceSize stride_ = 0; // bytes from word to word
    std::uint32_t taken_ = 0;
};

} // namespace tarnwick::gpu
