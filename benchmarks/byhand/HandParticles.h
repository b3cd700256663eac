// A particle scene as it is written by hand: a kernel, a fading pass with point sprites added on
// top, and the final pass.
#pragma once

#include "benchmarks/byhand/HandScene.h"

namespace tarnwick::bench {

class HandParticles : public HandScene {
  public:
    // `stride` is that of the scene's record, bytes. Throws VulkanError or TwinError.
    HandParticles(const HandSceneKind& kind, std::uint32_t stride);
    void next() override;

    // Commands of the update kernel alone, and of copying its records elsewhere, `times` each, one
    // after the other; both block until they are done.
    void updateOften(int times);
    void copyOften(int times);

  private:
    std::uint32_t groups() const;
    void step(VkCommandBuffer commands) const;
    void trailsPass(VkCommandBuffer commands) const;

    std::uint32_t number_ = 0; // of the frame to draw
    std::size_t current_ = 0;  // which trails are drawn into
    VkDeviceSize bytes_;       // of all particles
    HandBuffer particles_, copy_;
    std::array<HandImage, 2> trails_;
    std::array<VkDescriptorSet, 2> bindings_; // each with the trails of its number
    VkPipeline spawn_, update_, fade_, dots_;
};

} // namespace tarnwick::bench
