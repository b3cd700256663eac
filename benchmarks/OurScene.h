// A particle or grid episode, drawn as the saver draws it.
#pragma once

#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/ShaderProgram.h"
#include "benchmarks/Scene.h"

#include <memory>
#include <string>

namespace tarnwick::bench {

class OurScene : public Scene {
  public:
    // Throws ShaderError or gpu::DeviceError.
    OurScene(std::shared_ptr<gpu::Device> device, const std::string& episode);
    void next() override;
    std::vector<std::uint8_t> picture() override;

    const ShaderProgram& program() const { return *program_; }

  private:
    std::shared_ptr<gpu::Device> device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Texture> target_;
    std::shared_ptr<const ShaderProgram> program_;
    std::unique_ptr<ProgramFrames> frames_;
    std::uint32_t frame_ = 0;
};

} // namespace tarnwick::bench
