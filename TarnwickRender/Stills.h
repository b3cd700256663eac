// An episode drawn off screen at one size, one still after another.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/ProgramFrames.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarnwick {

// Progress and results beside the picture.
struct StillNews {
    // Called before and during the steps of a simulation, with the steps done and their total.
    std::function<void(std::int64_t step, std::int64_t goal)> warmed;
    // Result: a loop of the episode was ended.
    bool hitLoopBudget = false;
};

// Keeps the queue and the textures between stills. One thread at a time.
class Stills {
  public:
    // Null for a size below 1 by 1 or above the device's, and if the device has no room.
    // `program` draws into ShaderProgram::pixelFormat; the device outlives this. `valuesAt`, unless
    // empty, gives each step of a simulation the values of its own time.
    static std::unique_ptr<Stills> make(std::shared_ptr<const ShaderProgram> program,
                                        gpu::Device& device, std::int64_t width,
                                        std::int64_t height, ValuesAt valuesAt = {});

    // Replaces `picture` by the frame at `time` seconds with the number `frame` and the pointer in
    // the middle. A particle episode is played from its start. False, with `picture` unchanged, if
    // the device fails. Blocks.
    bool render(float time, std::uint32_t frame, const ParamValues& values, Picture& picture,
                StillNews* news = nullptr, const ShaderInputs& inputs = ShaderInputs::none());

  private:
    Stills(std::shared_ptr<const ShaderProgram> program, gpu::Device& device, ValuesAt valuesAt)
        : program_(std::move(program)), device_(device), valuesAt_(std::move(valuesAt)) {}
    bool makeFrames();
    bool warm(float time, const ParamValues& values, StillNews* news);

    std::shared_ptr<const ShaderProgram> program_;
    gpu::Device& device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Texture> target_;
    std::unique_ptr<ProgramFrames> frames_;
    ValuesAt valuesAt_; // may be empty
};

} // namespace tarnwick
