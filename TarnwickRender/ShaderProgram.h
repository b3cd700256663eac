// An episode compiled for the GPU: every pipeline that its kind needs, built once, and the draw
// that ends each of its frames.
#pragma once

#include "TarnwickCore/Params.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Program/CompiledEpisode.h"
#include "TarnwickRender/Program/MeshPipelines.h"
#include "TarnwickRender/Program/ParticlePipelines.h"
#include "TarnwickRender/ShaderError.h"
#include "TarnwickRender/ShaderInputs.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

class ShaderRun;

// Never changes once made: threads, runs and renderers may share one.
class ShaderProgram {
  public:
    static constexpr gpu::PixelFormat pixelFormat = gpu::PixelFormat::bgra8Unorm; // final pictures
    static constexpr gpu::PixelFormat trailsFormat = gpu::PixelFormat::rgba16Float;
    static constexpr gpu::PixelFormat depthFormat = gpu::PixelFormat::depth32Float;
    static constexpr std::uint32_t meshSamples = 4;

    // `pixelFormat` is that of the target that draw() will draw into. Blocks; all or nothing.
    // Throws ShaderError. (Shared, since a run names the program that it was made for.)
    static std::shared_ptr<const ShaderProgram>
    compile(std::string_view episode, gpu::Device& device, gpu::PixelFormat pixelFormat);
    // Of an episode that was compiled for this device, or for any.
    static std::shared_ptr<const ShaderProgram>
    make(const CompiledEpisode& compiled, gpu::Device& device, gpu::PixelFormat pixelFormat);

    const std::vector<ParamDecl>& params() const { return params_; }
    const gpu::RenderPipelineState& pipeline() const { return *pipeline_; }
    // The next four are null where the episode does not call for them.
    const gpu::ComputePipelineState* soundPipeline() const { return soundPipeline_.get(); }
    const ParticlePipelines* particles() const { return particles_ ? &*particles_ : nullptr; }
    const MeshPipelines* mesh() const { return mesh_ ? &*mesh_ : nullptr; }
    const gpu::Texture* blank() const { return blank_.get(); } // 1 by 1, transparent black

    bool hasSound() const { return soundPipeline_ != nullptr; }
    // Whether drawing needs a ShaderRun of the target's size.
    bool needsRun() const { return particles_ || mesh_; }
    bool usesInputs() const { return blank_ != nullptr; }
    bool isParticles() const { return particles_.has_value(); }
    std::int64_t particleCount() const { return particles_ ? particles_->count : 0; }
    std::int64_t particleStride() const { return particles_ ? particles_->stride : 0; } // bytes
    bool isMesh() const { return mesh_.has_value(); }
    std::int64_t gridSize() const { return mesh_ ? mesh_->cells : 0; }

    // Encodes the full-screen pass that makes the final picture. Encodes nothing when the program
    // needs a run and `run` is null or another program's. Without `inputs` an episode that takes
    // some meets silence and black. Fails in no way.
    void draw(gpu::RenderCommandEncoder& encoder, const TWUniforms& uniforms,
              const ParamValues& values, const ShaderRun* run = nullptr,
              const ShaderInputs* inputs = nullptr) const;

  private:
    ShaderProgram() = default;
    void build(gpu::Device& device, const AssembledShader& shader, const gpu::Library& library,
               gpu::PixelFormat pixelFormat);
    void bindInputs(gpu::RenderCommandEncoder& encoder, const ShaderInputs& inputs) const;

    std::vector<ParamDecl> params_;
    std::unique_ptr<gpu::RenderPipelineState> pipeline_;
    std::unique_ptr<gpu::ComputePipelineState> soundPipeline_;
    std::optional<ParticlePipelines> particles_;
    std::optional<MeshPipelines> mesh_;
    std::unique_ptr<gpu::Texture> blank_;
};

} // namespace tarnwick
