// The words in which the shaders of one command buffer store that an invocation used up its loop
// budget.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <vulkan/vulkan.h>

#include <cstdint>

namespace tarnwick::gpu {

class LoopReports {
  public:
    bool make(const DeviceRecord& device); // false if out of memory
    void reset();
    void bury(Graveyard& graveyard);

    // The word for the next draw or dispatch. There are 64; the 65th draw gets the first again.
    // With words of their own, draws need no barrier between their stores.
    VkDescriptorBufferInfo next();
    bool anyIsSet() const; // complete once the GPU has finished the command buffer

  private:
    BufferMemory memory_;
    VkDeviceSize stride_ = 0; // bytes from word to word
    std::uint32_t taken_ = 0;
};

} // namespace tarnwick::gpu
