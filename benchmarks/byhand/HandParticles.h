// A particle scene written by hand: a kernel, a fading pass with added point sprites, and the final
// pass.
#pragma once

#include "benchmarks/byhand/HandScene.h"

namespace tarnwick::bench {

class HandParticles : public HandScene {
  public:
    // `stride` is the size of the record of the scene in bytes. Throws VulkanError or TwinError.
    HandParticles(const HandSceneKind& kind, std::uint32_t stride);
    void next() override;

    // Runs the update kernel only, or copies its records, `times` times in sequence. Both block
    // until completed.
    void updateOften(int times);
    void copyOften(int times);

  private:
    std::uint32_t groups() const;
    void step(VkCommandBuffer commands) const;
    void trailsPass(VkCommandBuffer commands) const;

    std::uint32_t number_ = 0; // of the frame to draw
    std::size_t current_ = 0;  // index of the trails being drawn
    VkDeviceSize bytes_;       // of all particles
    HandBuffer particles_, copy_;
    std::array<HandImage, 2> trails_;
    std::array<VkDescriptorSet, 2> bindings_; // each with the trails of its index
    VkPipeline spawn_, update_, fade_, dots_;
};

} // namespace tarnwick::bench
