// What a program needs at one size of picture, and the GPU work that comes before its final draw.
#pragma once

#include "TarnwickRender/ShaderProgram.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

// Lives as long as the size and the program stay the same; its owner makes a new one when either
// changes. To be used by the thread that drives the frames.
class ShaderRun {
  public:
    // Null for a program that needs no run, for a size below 1 by 1, and where the run's GPU
    // objects cannot be made. Particle and grid episodes are compiled but not drawn yet: null for
    // them too.
    static std::unique_ptr<ShaderRun> make(std::shared_ptr<const ShaderProgram> program,
                                           gpu::Device& device, std::int64_t width,
                                           std::int64_t height);

    const ShaderProgram& program() const { return *program_; }
    std::int64_t width() const { return width_; }   // pixels
    std::int64_t height() const { return height_; } // pixels

    // What the program's final draw shows as its texture 0: null where there is nothing yet.
    const gpu::Texture* picture() const { return nullptr; }

    // Encodes the work of a frame that comes before its final pass, at most `limit` steps of a
    // simulation. Neither commits nor waits.
    void prepare(const TWUniforms& uniforms, gpu::CommandBuffer& commands,
                 const ParamValues& values, std::int64_t limit);

  private:
    std::shared_ptr<const ShaderProgram> program_; // shared: draw() tells programs apart by it
    std::int64_t width_ = 0, height_ = 0;
};

} // namespace tarnwick
