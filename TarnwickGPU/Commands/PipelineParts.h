// The Vulkan sides of the pipeline states.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickGPU/Points/PointPipelines.h"
#include "TarnwickGPU/Vulkan/BindingLayout.h"
#include "TarnwickGPU/Vulkan/DeviceState.h"

#include <vulkan/vulkan.h>

#include <array>
#include <memory>
#include <mutex>
#include <span>
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
    PointPipelines points;

    RenderPipelineParts() = default;
    ~RenderPipelineParts();
    RenderPipelineParts(const RenderPipelineParts&) = delete;
    RenderPipelineParts& operator=(const RenderPipelineParts&) = delete;
};

// What a dispatch sets that Vulkan's pipelines have built in.
struct ThreadgroupShape {
    Size threads;
    // Bytes of what the kernel's [[threadgroup(n)]] pointers point to, by n; 0 where not set.
    std::array<std::uint32_t, mostThreadgroupPointers> lengths{};

    bool operator==(const ThreadgroupShape&) const = default;
};

// A kernel's threadgroup is known at the dispatch only: so there is a pipeline for each shape met.
struct ComputePipelineParts {
    ComputePipelineParts() = default;
    ~ComputePipelineParts();
    ComputePipelineParts(const ComputePipelineParts&) = delete;
    ComputePipelineParts& operator=(const ComputePipelineParts&) = delete;

    std::shared_ptr<DeviceState> device;
    BindingLayout layout;
    std::shared_ptr<const msl::EntryPoint> kernel;

    // Null when the device refuses it. Any thread.
    VkPipeline pipelineFor(const ThreadgroupShape& threadgroup) const;

  private:
    struct Variant {
        ThreadgroupShape threadgroup;
        VkPipeline pipeline;
    };
    mutable std::mutex mutex_;
    mutable std::vector<Variant> variants_;
};

// A module for the time that a pipeline is made in.
class ShaderModule {
  public:
    ShaderModule(VkDevice device, std::span<const std::uint32_t> words);
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

// Throws DeviceError where the function asks for more than the device has. `what` as above.
void checkNeeds(const DeviceState& device, const std::string& what,
                const msl::EntryPoint& function);

} // namespace tarnwick::gpu
