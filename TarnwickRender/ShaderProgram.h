// An episode compiled for the GPU: all pipelines of its kind, and the draw that ends each frame.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Program/CompiledEpisode.h"
#include "TarnwickRender/Program/ProgramParts.h"
#include "TarnwickRender/Program/TargetFormats.h"
#include "TarnwickRender/ShaderError.h"
#include "TarnwickRender/ShaderInputs.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tarnwick {

class ShaderRun;

// Constant: threads, runs and renderers may share one.
class ShaderProgram : public TargetFormats {
  public:
    // `pixelFormat` is the format of draw()'s target. Blocks. Throws ShaderError.
    static std::shared_ptr<const ShaderProgram> compile(const Episode& episode, gpu::Device& device,
                                                        gpu::PixelFormat pixelFormat);
    // Makes the program of an episode that was compiled for this device, or for any device.
    static std::shared_ptr<const ShaderProgram>
    make(const CompiledEpisode& compiled, gpu::Device& device, gpu::PixelFormat pixelFormat);

    // Shared with the program's runs.
    const std::shared_ptr<const ProgramParts>& parts() const { return parts_; }
    const std::vector<ParamDecl>& params() const { return parts_->params; }

    // Null if the episode is of another kind.
    const ParticlePipelines* particles() const {
        return isParticles() ? &*parts_->particles : nullptr;
    }
    const MeshPipelines* mesh() const { return isMesh() ? &*parts_->mesh : nullptr; }

    bool hasSound() const { return parts_->soundPipeline != nullptr; }
    // Whether drawing needs a ShaderRun of the target's size.
    bool needsRun() const { return parts_->needsRun(); }
    bool usesInputs() const { return parts_->blank != nullptr; }
    // Whether a frame depends on the frame before it, ShaderInputs::previous.
    bool readsPrevious() const { return parts_->readsPrevious; }
    bool isParticles() const { return parts_->particles.has_value(); }
    std::int64_t particleCount() const { return isParticles() ? parts_->particles->count : 0; }
    std::int64_t particleStride() const { // bytes
        return isParticles() ? parts_->particles->stride : 0;
    }
    bool isMesh() const { return parts_->mesh.has_value(); }
    std::int64_t gridSize() const { return isMesh() ? parts_->mesh->cells : 0; }

    // Encodes the full-screen draw of the final picture. Encodes nothing if the program needs a run
    // and `run` is null or of another program. `inputs` null: silence and black. Never fails.
    void draw(gpu::RenderCommandEncoder& encoder, const TWUniforms& uniforms,
              const ParamValues& values, const ShaderRun* run = nullptr,
              const ShaderInputs* inputs = nullptr) const;

  private:
    explicit ShaderProgram(std::shared_ptr<const ProgramParts> parts) : parts_(std::move(parts)) {}
    void bindInputs(gpu::RenderCommandEncoder& encoder, const ShaderInputs& inputs) const;

    std::shared_ptr<const ProgramParts> parts_;
};

} // namespace tarnwick
