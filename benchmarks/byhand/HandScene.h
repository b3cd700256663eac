// The common part of the hand-written scenes: the final pass into a picture, and the copy to the
// host.
#pragma once

#include "benchmarks/Scene.h"
#include "benchmarks/byhand/Pipelines.h"

namespace tarnwick::bench {

struct HandSceneKind {
    std::string deviceName;
    std::filesystem::path file; // GLSL sections
    VkFilter filter = VK_FILTER_LINEAR;
    std::uint32_t count = 0; // particles, or squares per side
    std::array<float, 4> params{};
};

class HandScene : public Scene {
  public:
    std::vector<std::uint8_t> picture() override;

  protected:
    explicit HandScene(const HandSceneKind& kind);
    // The record of frame `number`.
    void setTime(std::uint32_t number);
    // Draws the resources of `bindings` into the final picture, which must be in the attachment
    // layout.
    void finalPass(VkCommandBuffer commands, VkDescriptorSet bindings) const;
    void bind(VkCommandBuffer commands, VkDescriptorSet bindings, VkPipelineBindPoint point) const {
        pipelines_.bind(commands, bindings, frame_, point);
    }

    static constexpr VkExtent2D extent{sceneWidth, sceneHeight};
    Machine machine_;
    HandPipelines pipelines_;
    HandFrame frame_;
    HandImage target_;

  private:
    VkPipeline final_ = VK_NULL_HANDLE;
    HandBuffer rows_;
};

} // namespace tarnwick::bench
