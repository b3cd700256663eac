// The vertex buffers of a pipeline, as Vulkan's vertex input state.
#pragma once

#include "TarnwickGPU/VertexDescriptor.h"
#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <vector>

namespace tarnwick::gpu {

// The attributes that the function reads. The descriptor has no fault (AttributeFaults.h); a null
// one is for functions without attributes.
class VertexInput {
  public:
    VertexInput(const msl::EntryPoint& function, const VertexDescriptor* descriptor);
    VertexInput(const VertexInput&) = delete;
    VertexInput& operator=(const VertexInput&) = delete;

    const VkPipelineVertexInputStateCreateInfo& state() const { return state_; }
    // The index of the encoder's buffer for each of Vulkan's bindings.
    const std::vector<std::uint32_t>& buffers() const { return buffers_; }

  private:
    std::uint32_t bindingOf(std::uint32_t buffer, const BufferLayoutDescriptor& layout);

    std::vector<std::uint32_t> buffers_;
    std::vector<VkVertexInputAttributeDescription> attributes_;
    std::vector<VkVertexInputBindingDescription> bindings_;
    std::vector<VkVertexInputBindingDivisorDescriptionEXT> rates_;
    VkPipelineVertexInputDivisorStateCreateInfoEXT rateState_{};
    VkPipelineVertexInputStateCreateInfo state_{};
};

} // namespace tarnwick::gpu
