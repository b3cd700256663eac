// What the hand-written scenes share: the final pass into a picture, and its way to the host.
#pragma once

#include "benchmarks/Scene.h"
#include "benchmarks/byhand/Pipelines.h"

namespace tarnwick::bench {

struct HandSceneKind {
    std::string deviceName;
    std::filesystem::path file; // GLSL sections
    VkFilter filter = VK_FILTER_LINEAR;
    std::uint32_t count = 0; // particles, or squares a side
    std::array<float, 4> params{};
};

class HandScene : public Scene {
  public:
    std::vector<std::uint8_t> picture() override;

  protected:
    explicit HandScene(const HandSceneKind& kind);
    // The record of frame `number`.
    void setTime(std::uint32_t number);
    // Draws what `bindings` names into the final picture, which is an attachment already.
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
