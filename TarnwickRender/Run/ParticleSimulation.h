// The particles of an episode, moved in steps of 1/60 second, and the trails that they leave.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Program/FrameUniforms.h"
#include "TarnwickRender/Program/ProgramParts.h"
#include "TarnwickRender/ValuesAt.h"

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace tarnwick {

// Steps do not depend on the frames that are shown, so the same time always shows the same picture:
// on a screen, in a still and in a movie. The records live on the GPU alone. To be used by one
// thread at a time.
class ParticleSimulation {
  public:
    using Mouse = FrameMoment::Mouse;

    static constexpr std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();

    // `width` by `height` are the trails' pixels. Null for a program without particles, for a size
    // below 1 by 1, and where the device cannot make the buffer or the trails.
    static std::unique_ptr<ParticleSimulation> make(std::shared_ptr<const ProgramParts> program,
                                                    gpu::Device& device, std::int64_t width,
                                                    std::int64_t height);

    // The step nearest to a time, a half counting upwards; 0 for times before the start.
    static std::int64_t steps(double seconds);

    const ProgramParts& program() const { return *program_; }
    std::int64_t step() const { return step_; } // the last one performed; -1: none yet
    // The records of all particles; undefined until the spawning writes them.
    const gpu::Buffer& particles() const { return *particles_; }
    // The latest picture and the one before it, by turns.
    const std::array<std::unique_ptr<gpu::Texture>, 2>& trails() const { return trails_; }
    std::size_t current() const { return current_; } // of the two trails
    const gpu::Texture& image() const { return *trails_[current_]; }

    // The next advance spawns the particles anew.
    void reset() { step_ = -1; }

    // Gives each step the values of its own time, step() / 60 seconds, in place of those given to
    // advance() and warm(): then a step does not depend on the frame that it is performed for. An
    // empty function undoes it.
    void setValuesAt(ValuesAt valuesAt) { valuesAt_ = std::move(valuesAt); }

    // Encodes the steps up to `target`, at most `limit` of them. A target that lies behind starts
    // again from the spawning. Where an encoder cannot be made it stops; step() tells how far it
    // got. Step numbers fit in 32 bits.
    void advance(std::int64_t target, gpu::CommandBuffer& commands, const ParamValues& values,
                 const Mouse& mouse, std::int64_t limit);

    // Performs the steps up to the one before `target` in command buffers of its own and waits for
    // each, after which it calls `afterEach`. Whether it got there.
    bool warm(std::int64_t target, gpu::CommandQueue& queue, const ParamValues& values,
              const Mouse& mouse, const std::function<void()>& afterEach = {});

    // Whether an invocation of the steps that warm() waited for ran out of its loop budget.
    bool hitLoopBudget() const { return hitLoopBudget_; }

  private:
    struct Step; // what the passes of one step share
    class Params;

    ParticleSimulation() = default;
    TWUniforms uniforms(std::int64_t step, const Mouse& mouse) const;
    bool encode(const Step& step, gpu::CommandBuffer& commands);
    bool move(const Step& step, gpu::CommandBuffer& commands) const;
    bool paint(const Step& step, const gpu::Texture& target, gpu::CommandBuffer& commands) const;

    std::shared_ptr<const ProgramParts> program_; // shared with the run that it belongs to
    std::int64_t width_ = 0, height_ = 0;         // pixels
    ValuesAt valuesAt_;                           // may be empty
    std::int64_t step_ = -1;
    std::unique_ptr<gpu::Buffer> particles_; // undefined until the spawning writes all of it
    std::array<std::unique_ptr<gpu::Texture>, 2> trails_;
    std::size_t current_ = 0;
    bool hitLoopBudget_ = false;
};

} // namespace tarnwick
