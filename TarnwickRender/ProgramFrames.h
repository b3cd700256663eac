// The frames of one program at one size: each is encoded from its time and its values.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/Program/FrameUniforms.h"
#include "TarnwickRender/Run/ShaderRun.h"
#include "TarnwickRender/ShaderInputs.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/ValuesAt.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tarnwick {

struct ProgramFrame {
    FrameMoment moment;
    const ParamValues& values;
    const ShaderInputs& inputs = ShaderInputs::none();
    std::int64_t stepLimit = ParticleSimulation::noLimit; // steps of a simulation, at most
};

// The pass that shows a frame.
struct FramePass {
    using Encode = std::function<void(gpu::RenderCommandEncoder&)>;

    gpu::RenderPassDescriptor descriptor;
    Encode before{}; // sets the viewport of the program's picture; absent: the whole target
    Encode after{};  // draws over the picture
};

// One thread at a time. The device outlives it.
class ProgramFrames {
  public:
    // Null for a size below 1 by 1 and where the device cannot make the run that the program needs.
    // `valuesAt`, unless empty, gives each step of a simulation the values of its own time.
    static std::unique_ptr<ProgramFrames> make(std::shared_ptr<const ShaderProgram> program,
                                               gpu::Device& device, std::int64_t width,
                                               std::int64_t height, ValuesAt valuesAt = {});

    // The reason, as one sentence for the user, why make() or rendering a still gave nothing for a
    // size of at least 1 by 1.
    static std::string absence(const ShaderProgram& program, const gpu::Device& device,
                               std::int64_t width, std::int64_t height);

    std::int64_t width() const { return width_; } // pixels
    std::int64_t height() const { return height_; }
    // Null unless the program has particles.
    const ParticleSimulation* simulation() const { return run_ ? run_->simulation() : nullptr; }
    // Whether a loop of the episode was ended in warm().
    bool hitLoopBudget() const { return simulation() && simulation()->hitLoopBudget(); }

    // Advances a simulation to the step before that of `time` (seconds). A simulation at the step
    // of `time` or later starts again. Waits for the GPU and calls `afterEach` every 240 steps.
    // False if the device fails; true without a simulation.
    bool warm(float time, gpu::CommandQueue& queue, const ParamValues& values,
              const std::function<void()>& afterEach = {}, const FrameMoment::Mouse& mouse = {});

    // A simulation starts again.
    void restart();

    // Goes on with the particles of other frames: ParticleSimulation::follow. True without a
    // simulation.
    bool follow(const ProgramFrames& other, gpu::Device& device, gpu::CommandQueue& queue);

    // Encodes the steps of a simulation or the grid's pass, then `pass`. Neither commits nor waits.
    // False if there is no encoder.
    bool encode(gpu::CommandBuffer& commands, const ProgramFrame& frame, const FramePass& pass);

  private:
    explicit ProgramFrames(std::shared_ptr<const ShaderProgram> program)
        : program_(std::move(program)) {}

    std::shared_ptr<const ShaderProgram> program_;
    std::int64_t width_ = 0, height_ = 0;
    std::unique_ptr<ShaderRun> run_; // null for a program that needs none
};

// Encodes a pass that only clears its target. False if there is no encoder.
bool encodeClearing(gpu::CommandBuffer& commands, const gpu::RenderPassDescriptor& pass);

} // namespace tarnwick
