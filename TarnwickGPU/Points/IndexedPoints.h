// The device's own points for indexed draws of a pipeline whose points are quads. Quads number
// their vertices by corner, so an index buffer of points cannot draw them.
#pragma once

#include "TarnwickGPU/Device/GraphicsPipeline.h"
#include "TarnwickSpirv/Instruction.h"

#include <mutex>

namespace tarnwick::gpu {

class IndexedPoints {
  public:
    // What the pipeline is made of. The spans of `needs` are ignored.
    void prepare(const GraphicsPipelineNeeds& needs, spirv::Words vertex, spirv::Words fragment);

    // Made by the first call, which blocks. Null if the device refuses it. Any thread.
    VkPipeline pipeline(const DeviceState& device) const;
    void bury(Graveyard& graveyard);

  private:
    GraphicsPipelineNeeds needs_;
    spirv::Words vertex_, fragment_;
    mutable std::mutex mutex_;
    mutable VkPipeline pipeline_ = VK_NULL_HANDLE;
};

} // namespace tarnwick::gpu
