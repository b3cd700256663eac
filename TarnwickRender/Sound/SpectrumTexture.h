// The sound's spectrum as an episode that takes `Inputs` reads it.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"

#include <cstdint>
#include <memory>
#include <span>

namespace tarnwick {

class SpectrumTexture {
  public:
    // Null where the device cannot make it, or `bins` is below 1.
    static std::unique_ptr<SpectrumTexture> make(gpu::Device& device, std::int64_t bins);

    // `bins` by 1 pixels of R32Float; bin i is at x = i.
    const gpu::Texture& texture() const { return *texture_; }

    // The bins from the first on; those beyond `values` keep what they held, and values beyond the
    // bins are left out. While the GPU is not at work on the texture.
    void update(std::span<const float> values);

  private:
    std::unique_ptr<gpu::Texture> texture_;
};

} // namespace tarnwick
