#include "benchmarks/Updating.h"

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/Program/FrameUniforms.h"
#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/ShaderProgram.h"
#include "benchmarks/Playing.h"
#include "benchmarks/Turns.h"
#include "benchmarks/byhand/HandParticles.h"

namespace tarnwick::bench {

namespace {

constexpr int rounds = 9;
constexpr int times = 8; // updates per command buffer, so that submission costs little

// An episode's kernels, without the trails.
class OurParticles {
  public:
    OurParticles(gpu::Device& device, const ShaderProgram& program)
        : program_(program), queue_(device.newCommandQueue()),
          records_(device.newBuffer(
              static_cast<std::size_t>(program.particleCount() * program.particleStride()),
              gpu::StorageMode::private_)) {
        if (!queue_ || !records_)
            throw gpu::DeviceError("The device has no memory for the particles.");
    }

    void spawn() {
        run([&](gpu::ComputeCommandEncoder& encoder) {
            encoder.setBytes(params_.data(), params_.length(), 1);
            encoder.setBytes(&count_, sizeof count_, 2);
            dispatch(encoder, *program_.particles()->spawn);
        });
    }

    void updateOften(int times) {
        constexpr float step = 1.0f / ShaderAssembler::stepRate; // seconds
        const TWUniforms uniforms =
            frameUniforms({.time = step, .timeDelta = step, .frame = 1}, 0, 0);
        run([&](gpu::ComputeCommandEncoder& encoder) {
            encoder.setBytes(&uniforms, sizeof uniforms, 1);
            encoder.setBytes(params_.data(), params_.length(), 2);
            encoder.setBytes(&count_, sizeof count_, 3);
            for (int i = 0; i < times; i++)
                dispatch(encoder, *program_.particles()->update);
        });
    }

  private:
    template <class Encode> void run(Encode&& encode) {
        auto commands = queue_->commandBuffer();
        auto encoder = commands ? commands->computeCommandEncoder() : std::nullopt;
        if (!encoder)
            throw gpu::DeviceError("The device cannot make a command buffer.");
        encoder->setBuffer(*records_, 0, 0);
        encode(*encoder);
        encoder->endEncoding();
        commands->commit();
        commands->waitUntilCompleted();
    }

    void dispatch(gpu::ComputeCommandEncoder& encoder, const gpu::ComputePipelineState& kernel) {
        encoder.setComputePipelineState(kernel);
        encoder.dispatchThreads({.width = count_}, hostThreadgroup(kernel));
    }

    const ShaderProgram& program_;
    ParamBuffer params_{program_.params(), {}};
    std::uint32_t count_ = static_cast<std::uint32_t>(program_.particleCount());
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> records_;
};

} // namespace

UpdateSpeed updateSpeed(const std::shared_ptr<gpu::Device>& device,
                        const std::filesystem::path& folder) {
    SceneCase one{
        .file = "sparks", .count = device->info().isCPU ? 1'000'000u : 4'000'000u, .stride = 64};
    const auto program = ShaderProgram::compile(Episode::of(episode(folder, one)), *device,
                                                ShaderProgram::pixelFormat);
    OurParticles ours(*device, *program);
    ours.spawn();
    HandParticles twin(handKind(*device, folder, one, program->params()), one.stride);
    twin.next();
    const TurnTimes kernels = inTurns(
        rounds, [&] { ours.updateOften(times); }, [&] { twin.updateOften(times); });
    twin.copyOften(times);
    std::vector<Sample> copies;
    for (int round = 0; round < rounds; round++)
        copies.push_back(sample([&] { twin.copyOften(times); }));
    const double megabytes = 2.0 * times * one.count * one.stride / 1e6;
    return {.count = one.count,
            .stride = one.stride,
            .ours = megabytes / kernels.ours,
            .twin = megabytes / kernels.twin,
            .copying = megabytes / shortest(copies).wall,
            .processorRatio = kernels.processorRatio};
}

} // namespace tarnwick::bench
