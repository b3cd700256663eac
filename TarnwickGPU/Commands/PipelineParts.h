// The Vulkan sides of the pipeline states. RenderPipelineState.cpp and ComputePipelineState.cpp
// make them.
#pragma once

#include "TarnwickGPU/CommandRecords.h"
#include "TarnwickGPU/Commands/WorkTraits.h"
#include "TarnwickGPU/Device/BindingLayout.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickGPU/Points/PointPipelines.h"

#include <vulkan/vulkan.h>

#include <array>
#include <memory>
#include <mutex>
#include <vector>

namespace tarnwick::gpu {

struct RenderPipelineParts {
    std::shared_ptr<DeviceState> device;
    PipelineWithLayout drawing;
    std::array<PixelFormat, mostColors> colorFormats{};
    PixelFormat depthFormat = PixelFormat::invalid;
    std::uint32_t sampleCount = 1;
    TopologyClass topology = TopologyClass::triangle;
    PointPipelines points;   // beside `drawing`, if it draws points
    bool hasPatches = false; // its vertex function takes patches
    bool hasControlPointIndices = false;
    std::vector<std::uint32_t> vertexBuffers; // the index of each of Vulkan's vertex bindings
    std::shared_ptr<WorkTraits> traits = std::make_shared<WorkTraits>();

    RenderPipelineParts() = default;
    ~RenderPipelineParts();
    RenderPipelineParts(const RenderPipelineParts&) = delete;
    RenderPipelineParts& operator=(const RenderPipelineParts&) = delete;
};

// The values of a dispatch that are constants in Vulkan's pipelines.
struct ThreadgroupShape {
    Size threads;
    // Bytes of threadgroup memory at the kernel's pointer [[threadgroup(n)]], by n; 0: not set.
    std::array<std::uint32_t, mostThreadgroupPointers> lengths{};

    bool operator==(const ThreadgroupShape&) const = default;
};

// The threadgroup is known only at the dispatch, so there is one pipeline for each shape.
struct ComputePipelineParts {
    ComputePipelineParts() = default;
    ~ComputePipelineParts();
    ComputePipelineParts(const ComputePipelineParts&) = delete;
    ComputePipelineParts& operator=(const ComputePipelineParts&) = delete;

    std::shared_ptr<DeviceState> device;
    BindingLayout layout;
    std::shared_ptr<const msl::EntryPoint> kernel;
    std::shared_ptr<WorkTraits> traits = std::make_shared<WorkTraits>();

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

} // namespace tarnwick::gpu
