// The pipelines of a render pipeline that draws points.
#pragma once

#include "TarnwickGPU/Device/BindingLayout.h"
#include "TarnwickGPU/Points/IndexedPoints.h"
#include "TarnwickGPU/Points/PointRecord.h"

#include <vulkan/vulkan.h>

#include <cstdint>

namespace tarnwick::gpu {

struct DeviceState;
struct RenderPipelineDescriptor;

enum class PointWay : std::uint8_t {
    asGiven, // no points, or a vertex function without forms
    points,  // as the device's own points
    quads,   // as two triangles per point
    sorted   // a kernel decides for each block of points; only for colours that add up, since the
             // order of the points changes
};

struct PointPipelines {
    PointWay way = PointWay::asGiven;
    // Draws quads with the layout of the render pipeline, which draws points: only of way `sorted`.
    VkPipeline quads = VK_NULL_HANDLE;
    IndexedPoints indexed;        // only of way `quads`
    PipelineWithLayout sorting;   // a kernel of way `sorted`
    PipelineWithLayout splatting; // a kernel that also adds small points to sums; may be missing
    PipelineWithLayout sums;      // draws the sums into the target

    void bury(Graveyard& graveyard);
};

// The kernels' buffers: their indices in CommandBufferParts::ownBuffers.
inline constexpr std::size_t drawsBuffer = 0, sumsBuffer = 1;

// Makes the pipeline that draws points (quads if the way is `quads`), and those beside it. On an
// error the caller buries what was made.
VkResult makePointPipelines(DeviceState& device, const RenderPipelineDescriptor& descriptor,
                            PipelineWithLayout& drawing, PointPipelines& points);

} // namespace tarnwick::gpu
