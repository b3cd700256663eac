// The Vulkan sides of the pipeline states.
#pragma once

#include "TarnwickGPU/BindingLayout.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/DeviceState.h"
#include "TarnwickGPU/Pipeline.h"

#include <vulkan/vulkan.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tarnwick::gpu {

struct RenderPipelineParts {
    std::shared_ptr<DeviceState> device;
    BindingLayout layout;
    VkPipeline pipeline = VK_NULL_HANDLE;
    PixelFormat colorFormat = PixelFormat::invalid, depthFormat = PixelFormat::invalid;
    std::uint32_t sampleCount = 1;
    TopologyClass topology = TopologyClass::triangle;

    RenderPipelineParts() = default;
    ~RenderPipelineParts();
    RenderPipelineParts(const RenderPipelineParts&) = delete;
    RenderPipelineParts& operator=(const RenderPipelineParts&) = delete;
};

// A kernel's threadgroup size is known at the dispatch only, while Vulkan's pipelines have it built
// in: so there is one for each size met.
struct ComputePipelineParts {
    ComputePipelineParts() = default;
    ~ComputePipelineParts();
    ComputePipelineParts(const ComputePipelineParts&) = delete;
    ComputePipelineParts& operator=(const ComputePipelineParts&) = delete;

    std::shared_ptr<DeviceState> device;
    BindingLayout layout;
    std::shared_ptr<const msl::EntryPoint> kernel;

    // Null when the device refuses it. Any thread.
    VkPipeline pipelineFor(const Size& threadgroup) const;

  private:
    struct Variant {
        Size threadgroup;
        VkPipeline pipeline;
    };
    mutable std::mutex mutex_;
    mutable std::vector<Variant> variants_;
};

// A module for the time that a pipeline is made in.
class ShaderModule {
  public:
    ShaderModule(VkDevice device, const msl::EntryPoint& entryPoint);
    ~ShaderModule();
    ShaderModule(const ShaderModule&) = delete;
    ShaderModule& operator=(const ShaderModule&) = delete;
    VkShaderModule handle() const { return handle_; } // null when the device refused it

  private:
    VkDevice device_;
    VkShaderModule handle_ = VK_NULL_HANDLE;
};

// What DeviceError says of a failed pipeline. `what` is the subject, as "the kernel NAME".
std::string refusal(const DeviceState& device, const std::string& what, VkResult result);

} // namespace tarnwick::gpu
