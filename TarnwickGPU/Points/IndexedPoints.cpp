#include "TarnwickGPU/Points/IndexedPoints.h"

#include <utility>

namespace tarnwick::gpu {

void IndexedPoints::prepare(const GraphicsPipelineNeeds& needs, spirv::Words vertex,
                            spirv::Words fragment) {
    vertex_ = std::move(vertex);
    fragment_ = std::move(fragment);
    needs_ = needs;
    needs_.vertex = vertex_;
    needs_.fragment = fragment_;
}

VkPipeline IndexedPoints::pipeline(const DeviceState& device) const {
    std::lock_guard lock(mutex_);
    if (!pipeline_)
        makeGraphicsPipeline(device, needs_, pipeline_);
    return pipeline_;
}

void IndexedPoints::bury(Graveyard& graveyard) {
    graveyard.bury(pipeline_);
    pipeline_ = VK_NULL_HANDLE;
}

} // namespace tarnwick::gpu
