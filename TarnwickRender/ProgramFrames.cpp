#include "TarnwickRender/ProgramFrames.h"

namespace tarnwick {

std::unique_ptr<ProgramFrames> ProgramFrames::make(std::shared_ptr<const ShaderProgram> program,
                                                   gpu::Device& device, std::int64_t width,
                                                   std::int64_t height, ValuesAt valuesAt) {
    if (width < 1 || height < 1)
        return nullptr;
    std::unique_ptr<ProgramFrames> frames(new ProgramFrames(std::move(program)));
    frames->width_ = width;
    frames->height_ = height;
    if (!frames->program_->needsRun())
        return frames;
    frames->run_ = ShaderRun::make(frames->program_->parts(), device, width, height);
    if (!frames->run_)
        return nullptr;
    frames->run_->setValuesAt(std::move(valuesAt));
    return frames;
}

std::string ProgramFrames::absence(const ShaderProgram& program, const gpu::Device& device,
                                   std::int64_t width, std::int64_t height) {
    const std::string& name = device.info().name;
    if (device.isLost())
        return name + " was lost.";
    const auto bytes =
        static_cast<std::uint64_t>(program.particleCount() * program.particleStride());
    const std::string particles = std::to_string(program.particleCount()) + " particles of " +
                                  std::to_string(program.particleStride()) + " bytes";
    if (bytes > device.maxBufferLength())
        return particles + " are too many for " + name + ": they take " + std::to_string(bytes) +
               " bytes, and it has room for " + std::to_string(device.maxBufferLength()) + ".";
    return name + " has no room for a picture of " + std::to_string(width) + "x" +
           std::to_string(height) + " pixels" +
           (program.isParticles() ? " with " + particles + "." : ".");
}

bool ProgramFrames::warm(float time, gpu::CommandQueue& queue, const ParamValues& values,
                         const std::function<void()>& afterEach, const FrameMoment::Mouse& mouse) {
    return !run_ || run_->warm(time, queue, values, mouse, afterEach);
}

void ProgramFrames::restart() {
    if (run_)
        run_->restart();
}

bool ProgramFrames::follow(const ProgramFrames& other, gpu::Device& device,
                           gpu::CommandQueue& queue) {
    return simulation() == nullptr || (other.run_ && run_->follow(*other.run_, device, queue));
}

bool ProgramFrames::encode(gpu::CommandBuffer& commands, const ProgramFrame& frame,
                           const FramePass& pass) {
    const TWUniforms uniforms = frameUniforms(frame.moment, width_, height_);
    if (run_)
        run_->prepare(uniforms, commands, frame.values, frame.stepLimit);
    auto encoder = commands.renderCommandEncoder(pass.descriptor);
    if (!encoder)
        return false;
    if (pass.before)
        pass.before(*encoder);
    program_->draw(*encoder, uniforms, frame.values, run_.get(), &frame.inputs);
    if (pass.after)
        pass.after(*encoder);
    encoder->endEncoding();
    return true;
}

bool encodeClearing(gpu::CommandBuffer& commands, const gpu::RenderPassDescriptor& pass) {
    auto encoder = commands.renderCommandEncoder(pass);
    if (encoder)
        encoder->endEncoding();
    return encoder.has_value();
}

} // namespace tarnwick
