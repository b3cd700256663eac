// Gives an episode that takes `Inputs` the levels and the spectrum of any sound.
#pragma once

#include "TarnwickRender/ShaderInputs.h"
#include "TarnwickRender/Sound/SpectrumTexture.h"

#include <array>
#include <memory>
#include <span>

namespace tarnwick {

// One thread at a time.
class LevelInputs {
  public:
    // Null if the device has no room.
    static std::unique_ptr<LevelInputs> make(gpu::Device& device);

    // `bands` and `spectrum` are those of an AudioAnalyzer with spectrumBins bins. The texture is
    // owned here and written by each call, so the GPU must have finished with the last inputs.
    ShaderInputs inputs(const std::array<float, 4>& bands, std::span<const float> spectrum);

  private:
    explicit LevelInputs(std::unique_ptr<SpectrumTexture> spectrum)
        : spectrum_(std::move(spectrum)) {}

    std::unique_ptr<SpectrumTexture> spectrum_;
};

} // namespace tarnwick
