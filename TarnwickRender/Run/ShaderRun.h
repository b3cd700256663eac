// The GPU state of a particle or grid program at one size, and its work before the final draw.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/Run/MeshTarget.h"
#include "TarnwickRender/Run/ParticleSimulation.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarnwick {

// Its owner makes a new one when the size or the program changes. One thread at a time.
class ShaderRun {
  public:
    // Null for a program that needs no run, for a size below 1 by 1, and if the device has no room.
    static std::unique_ptr<ShaderRun> make(std::shared_ptr<const ProgramParts> program,
                                           gpu::Device& device, std::int64_t width,
                                           std::int64_t height);

    const ProgramParts& program() const { return *program_; }
    std::int64_t width() const { return width_; }   // pixels
    std::int64_t height() const { return height_; } // pixels
    // One of the two is not null.
    const ParticleSimulation* simulation() const { return simulation_.get(); }
    const MeshTarget* mesh() const { return mesh_.get(); }
    // Texture 0 of the final draw: the trails, or the grid's picture.
    const gpu::Texture* picture() const;

    // A simulation starts again.
    void restart();
    // ParticleSimulation::follow. True without a simulation.
    bool follow(const ShaderRun& other, gpu::Device& device, gpu::CommandQueue& queue);

    // Gives each step of a simulation the values of its own time, in place of the values that
    // prepare() and warm() get. A grid takes the values of the frame.
    void setValuesAt(ValuesAt valuesAt);

    // Encodes the work before the final pass of a frame: at most `limit` steps of a simulation up
    // to the step of uniforms.time, or the grid's pass. Neither commits nor waits. Encodes less if
    // there is no encoder.
    void prepare(const TWUniforms& uniforms, gpu::CommandBuffer& commands,
                 const ParamValues& values, std::int64_t limit);

    // Advances a simulation to the step before that of `time` (seconds), so that the next
    // prepare() does the step of `time`. A simulation at that step or later starts again. Waits
    // for the GPU and calls `afterEach` every 240 steps. False if the device fails; true without a
    // simulation.
    bool warm(double time, gpu::CommandQueue& queue, const ParamValues& values,
              const ParticleSimulation::Mouse& mouse = {},
              const std::function<void()>& afterEach = {});

  private:
    ShaderRun() = default;
    void drawMesh(const TWUniforms& uniforms, gpu::CommandBuffer& commands,
                  const ParamValues& values) const;

    std::shared_ptr<const ProgramParts> program_; // shared: a program draws its own runs only
    std::int64_t width_ = 0, height_ = 0;
    std::unique_ptr<ParticleSimulation> simulation_;
    std::unique_ptr<MeshTarget> mesh_;
};

} // namespace tarnwick
