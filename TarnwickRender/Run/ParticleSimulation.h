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

// Steps do not depend on frames, so the same time always has the same picture: on a screen, in a
// still and in a movie. The records stay on the GPU. One thread at a time.
class ParticleSimulation {
  public:
    using Mouse = FrameMoment::Mouse;

    static constexpr std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();

    // `width` and `height` are the pixels of the trails. Null for a program without particles, for
    // a size below 1 by 1, and if the device has no room.
    static std::unique_ptr<ParticleSimulation> make(std::shared_ptr<const ProgramParts> program,
                                                    gpu::Device& device, std::int64_t width,
                                                    std::int64_t height);

    // The step nearest to a time, halves up; 0 for times below 0 and NaN.
    static std::int64_t steps(double seconds);

    const ProgramParts& program() const { return *program_; }
    std::int64_t step() const { return step_; } // the last one done; -1: none
    // The records of all particles; undefined until the spawning writes them.
    const gpu::Buffer& particles() const { return *particles_; }
    // The latest trails and those before them, in turn.
    const std::array<std::shared_ptr<gpu::Texture>, 2>& trails() const { return trails_; }
    std::size_t current() const { return current_; } // index of the latest
    const gpu::Texture& image() const { return *trails_[current_]; }

    // Goes on with the particles and trails of another simulation, which must not be advanced
    // afterwards: both share them. Trails of another size are scaled, for which the GPU is waited
    // for. False, and nothing is changed, if the particles are other records or another number, or
    // if the device fails.
    bool follow(const ParticleSimulation& other, gpu::Device& device, gpu::CommandQueue& queue);

    // The next advance() spawns the particles again.
    void reset() { step_ = -1; }

    // Gives each step the values of its own time, step() / 60 seconds, in place of the values that
    // advance() and warm() get. Empty: uses those again.
    void setValuesAt(ValuesAt valuesAt) { valuesAt_ = std::move(valuesAt); }

    // Encodes at most `limit` steps up to `target`. A target before step() starts again from the
    // spawning. Stops if there is no encoder; step() is the last step encoded. `target` is below
    // 2^32.
    void advance(std::int64_t target, gpu::CommandBuffer& commands, const ParamValues& values,
                 const Mouse& mouse, std::int64_t limit);

    // Does the steps up to the one before `target`: 240 a command buffer, waits for each and then
    // calls `afterEach`. False if the device fails.
    bool warm(std::int64_t target, gpu::CommandQueue& queue, const ParamValues& values,
              const Mouse& mouse, const std::function<void()>& afterEach = {});

    // Whether a loop of the episode was ended in warm().
    bool hitLoopBudget() const { return hitLoopBudget_; }

  private:
    struct Step; // the arguments of the passes of one step
    class Params;

    ParticleSimulation() = default;
    TWUniforms uniforms(std::int64_t step, const Mouse& mouse) const;
    bool encode(const Step& step, gpu::CommandBuffer& commands);
    bool move(const Step& step, gpu::CommandBuffer& commands) const;
    bool scaleTrails(const ParticleSimulation& other, gpu::Device& device,
                     gpu::CommandQueue& queue);
    bool paint(const Step& step, const gpu::Texture& target, gpu::CommandBuffer& commands) const;

    std::shared_ptr<const ProgramParts> program_; // shared with the run
    std::int64_t width_ = 0, height_ = 0;         // pixels
    ValuesAt valuesAt_;                           // may be empty
    std::int64_t step_ = -1;
    std::shared_ptr<gpu::Buffer> particles_; // undefined until the spawning writes all of it
    std::array<std::shared_ptr<gpu::Texture>, 2> trails_;
    std::size_t current_ = 0;
    bool hitLoopBudget_ = false;
};

} // namespace tarnwick
