// A grid scene written by hand: vertices from their index, four samples with depth, resolved, and
// the final pass.
#pragma once

#include "benchmarks/byhand/HandScene.h"

namespace tarnwick::bench {

class HandGrid : public HandScene {
  public:
    // Throws VulkanError or TwinError.
    explicit HandGrid(const HandSceneKind& kind);
    void next() override;

  private:
    void gridPass(VkCommandBuffer commands) const;

    std::uint32_t number_ = 0; // of the frame to draw
    HandImage color_, depth_, resolved_;
    VkDescriptorSet bindings_;
    VkPipeline background_, grid_;
};

} // namespace tarnwick::bench
