// An episode drawn off screen at one size, one still after another.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/ProgramFrames.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarnwick {

// What a caller may learn besides the picture.
struct StillNews {
    // Called before and while a simulation is brought forward, with the steps performed and wanted.
    std::function<void(std::int64_t step, std::int64_t goal)> warmed;
    // Afterwards: whether a loop of the episode ran out of its budget and was ended.
    bool hitLoopBudget = false;
};

// Keeps the queue, the target and the grid from still to still. One thread at a time.
class Stills {
  public:
    // Null for a size below 1 by 1 or beyond the device, and where it cannot make what it takes.
    // `program` draws into ShaderProgram::pixelFormat; the device outlives this. `valuesAt`, unless
    // empty, gives each step of a simulation the values of its own time.
    static std::unique_ptr<Stills> make(std::shared_ptr<const ShaderProgram> program,
                                        gpu::Device& device, std::int64_t width,
                                        std::int64_t height, ValuesAt valuesAt = {});

    // The picture at `time` seconds with the frame number `frame` and the pointer in the middle,
    // written over `picture`; by default with silence and no previous frame. Whether that could be
    // done; `picture` stays as it was if not. A particle episode is played from its start. Blocks.
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
