// The pipelines that a render pipeline of points is made of.
#pragma once

#include "TarnwickGPU/Device/BindingLayout.h"
#include "TarnwickGPU/Points/PointRecord.h"

#include <vulkan/vulkan.h>

#include <cstdint>

namespace tarnwick::gpu {

struct DeviceState;
struct RenderPipelineDescriptor;

enum class PointWay : std::uint8_t {
    asGiven, // no points, or a vertex function that the layer adds nothing to
    points,  // the device's own
    quads,   // two triangles a point
    sorted   // a kernel finds out which of both each block of points needs: for sums, which come
             // out alike in any order
};

struct PointPipelines {
    PointWay way = PointWay::asGiven;
    // Draws quads with the layout of the render pipeline, which draws points: only of way `sorted`.
    VkPipeline quads = VK_NULL_HANDLE;
    PipelineWithLayout sorting;   // a kernel of way `sorted`
    PipelineWithLayout splatting; // a kernel that also adds small points to sums; may be missing
    PipelineWithLayout sums;      // draws the sums into the target

    void bury(Graveyard& graveyard);
};

// The indices in CommandBufferParts::ownBuffers of the kernels' buffers.
inline constexpr std::size_t drawsBuffer = 0, sumsBuffer = 1;

// Makes the pipeline that draws points (quads if the way is `quads`), and those beside it. On an
// error the caller buries what was made.
VkResult makePointPipelines(DeviceState& device, const RenderPipelineDescriptor& descriptor,
                            PipelineWithLayout& drawing, PointPipelines& points);

} // namespace tarnwick::gpu
