#include "TarnwickRender/LevelInputs.h"

#include "TarnwickCore/ShaderAssembler.h"

namespace tarnwick {

std::unique_ptr<LevelInputs> LevelInputs::make(gpu::Device& device) {
    auto spectrum = SpectrumTexture::make(device, ShaderAssembler::spectrumBins);
    return spectrum ? std::unique_ptr<LevelInputs>(new LevelInputs(std::move(spectrum))) : nullptr;
}

ShaderInputs LevelInputs::inputs(const std::array<float, 4>& bands,
                                 std::span<const float> spectrum) {
    spectrum_->update(spectrum);
    return {.audio = bands, .spectrum = &spectrum_->texture()};
}

} // namespace tarnwick
