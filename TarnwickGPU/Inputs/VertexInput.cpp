#include "TarnwickGPU/Inputs/VertexInput.h"

#include "TarnwickGPU/Vulkan/VertexFormats.h"

#include <algorithm>

namespace tarnwick::gpu {

std::uint32_t VertexInput::bindingOf(std::uint32_t buffer, const BufferLayoutDescriptor& layout) {
    const auto known = std::find(buffers_.begin(), buffers_.end(), buffer);
    const auto binding = static_cast<std::uint32_t>(known - buffers_.begin());
    if (known != buffers_.end())
        return binding;
    buffers_.push_back(buffer);
    const bool isConstant = layout.step == StepFunction::constant; // every vertex reads element 0
    const bool isPerInstance = layout.step == StepFunction::perInstance;
    bindings_.push_back(
        {.binding = binding,
         .stride = isConstant ? 0 : layout.stride,
         .inputRate = isPerInstance ? VK_VERTEX_INPUT_RATE_INSTANCE : VK_VERTEX_INPUT_RATE_VERTEX});
    if (isPerInstance && layout.stepRate > 1)
        rates_.push_back({.binding = binding, .divisor = layout.stepRate});
    return binding;
}

VertexInput::VertexInput(const msl::EntryPoint& function, const VertexDescriptor* descriptor) {
    for (const msl::StageAttribute& attribute : function.attributes) {
        const AttributeDescriptor& given = descriptor->attributes[attribute.index];
        attributes_.push_back(
            {.location = attribute.index,
             .binding = bindingOf(given.bufferIndex, descriptor->layouts[given.bufferIndex]),
             .format = vertexFormat(given.format).vulkan,
             .offset = given.offset});
    }
    rateState_ = {.sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_DIVISOR_STATE_CREATE_INFO_EXT,
                  .vertexBindingDivisorCount = static_cast<std::uint32_t>(rates_.size()),
                  .pVertexBindingDivisors = rates_.data()};
    state_ = {.sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO,
              .pNext = rates_.empty() ? nullptr : &rateState_,
              .vertexBindingDescriptionCount = static_cast<std::uint32_t>(bindings_.size()),
              .pVertexBindingDescriptions = bindings_.data(),
              .vertexAttributeDescriptionCount = static_cast<std::uint32_t>(attributes_.size()),
              .pVertexAttributeDescriptions = attributes_.data()};
}

} // namespace tarnwick::gpu
