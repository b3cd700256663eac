// The spectrum of the sound as a texture, for an episode that takes `Inputs`.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"

#include <cstdint>
#include <memory>
#include <span>

namespace tarnwick {

class SpectrumTexture {
  public:
    // Null if `bins` is below 1 or the device has no room.
    static std::unique_ptr<SpectrumTexture> make(gpu::Device& device, std::int64_t bins);

    // `bins` by 1 pixels of R32Float; bin i is at x = i.
    const gpu::Texture& texture() const { return *texture_; }

    // Writes one bin per value. Bins without a value are unchanged; values without a bin are
    // ignored. The GPU must not use the texture meanwhile.
    void update(std::span<const float> values);

  private:
    std::unique_ptr<gpu::Texture> texture_;
};

} // namespace tarnwick
