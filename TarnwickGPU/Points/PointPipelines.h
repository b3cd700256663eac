// The pipelines that a render pipeline of points is made of.
#pragma once

#include "TarnwickGPU/Points/PointRecord.h"
#include "TarnwickGPU/Vulkan/BindingLayout.h"

#include <vulkan/vulkan.h>

#include <cstdint>

namespace tarnwick::gpu {

struct DeviceState;
struct RenderPipelineDescriptor;
struct RenderPipelineParts;

enum class PointWay : std::uint8_t {
    asGiven, // no points, or a vertex function that the layer adds nothing to
    points,  // the device's own
    quads,   // two triangles a point
    sorted   // a kernel finds out which of both each block of points needs: for sums, which come
             // out alike in any order
};

// A kernel of the layer's own, for one threadgroup size.
struct PointKernelPipeline {
    BindingLayout layout;
    VkPipeline pipeline = VK_NULL_HANDLE; // null: there is none
};

struct PointPipelines {
    PointWay way = PointWay::asGiven;
    // The render pipeline's own one draws by the way, `sorted` by points; this one by quads.
    VkPipeline quads = VK_NULL_HANDLE;
    PointKernelPipeline sorting;   // of way `sorted`
    PointKernelPipeline splatting; // sorts, and adds small points to sums; may be missing
    BindingLayout sumsLayout;      // draws the sums into the target
    VkPipeline sums = VK_NULL_HANDLE;

    void bury(DeviceState& device);
};

// The indices in CommandBufferParts::ownBuffers of the kernels' buffers.
inline constexpr std::size_t drawsBuffer = 0, sumsBuffer = 1;

// Makes all of `parts` that is a pipeline.
VkResult makePointPipelines(RenderPipelineParts& parts, const RenderPipelineDescriptor& descriptor);

} // namespace tarnwick::gpu
