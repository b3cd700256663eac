// What a program needs at one size of picture, and the GPU work that comes before its final draw.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/Run/MeshTarget.h"
#include "TarnwickRender/Run/ParticleSimulation.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarnwick {

// Lives as long as the size and the program stay the same; its owner makes a new one when either
// changes. To be used by the thread that drives the frames.
class ShaderRun {
  public:
    // Null for a program that needs no run, for a size below 1 by 1, and where the run's GPU
    // objects cannot be made.
    static std::unique_ptr<ShaderRun> make(std::shared_ptr<const ProgramParts> program,
                                           gpu::Device& device, std::int64_t width,
                                           std::int64_t height);

    const ProgramParts& program() const { return *program_; }
    std::int64_t width() const { return width_; }   // pixels
    std::int64_t height() const { return height_; } // pixels
    // One of the two is there.
    const ParticleSimulation* simulation() const { return simulation_.get(); }
    const MeshTarget* mesh() const { return mesh_.get(); }
    // What the program's final draw shows as its texture 0: the trails, or the grid's picture.
    const gpu::Texture* picture() const;

    // Gives each step of a simulation the values of its own time, in place of those given to
    // prepare() and warm(). A grid has no steps: it takes its frame's.
    void setValuesAt(ValuesAt valuesAt);

    // Encodes the work of a frame that comes before its final pass: at most `limit` steps of a
    // simulation towards the one that uniforms.time names, or the grid's pass. Neither commits nor
    // waits. Where an encoder cannot be made it encodes less.
    void prepare(const TWUniforms& uniforms, gpu::CommandBuffer& commands,
                 const ParamValues& values, std::int64_t limit);

    // Brings a simulation to the step before the one that `time` (seconds) names, so that the next
    // prepare() performs that one; from the start where it is there or beyond. Waits for the GPU
    // and calls `afterEach` every 240 steps. Whether it got there; true without a simulation.
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
