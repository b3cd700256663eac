#include "TarnwickRender/Run/ParticleSimulation.h"

#include "TarnwickBase/PixelSize.h"
#include "TarnwickBase/Precondition.h"
#include "TarnwickRender/OverlayQuad.h"
#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/Program/TargetFormats.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

constexpr std::int64_t stepsPerCommandBuffer = 240; // while warming: four seconds

std::unique_ptr<gpu::Texture> trailsTexture(gpu::Device& device, const PixelSize& size) {
    return device.newTexture({.format = TargetFormats::trailsFormat,
                              .width = size.width,
                              .height = size.height,
                              .usage = {.shaderRead = true, .renderTarget = true},
                              .storage = gpu::StorageMode::private_});
}

} // namespace

struct ParticleSimulation::Step {
    std::int64_t number;
    std::uint32_t particleCount;
    TWUniforms uniforms;
    const ParamBuffer& params;
};

// The parameters of each step: the same for all, or those of the step's time.
class ParticleSimulation::Params {
  public:
    Params(const ParticleSimulation& simulation, const ParamValues& values)
        : simulation_(simulation) {
        if (!simulation.valuesAt_)
            fill(values);
    }

    const ParamBuffer& of(std::int64_t step) {
        if (simulation_.valuesAt_)
            fill(simulation_.valuesAt_(static_cast<double>(step) / ShaderAssembler::stepRate));
        return *buffer_;
    }

  private:
    void fill(const ParamValues& values) { buffer_.emplace(simulation_.program_->params, values); }

    const ParticleSimulation& simulation_;
    std::optional<ParamBuffer> buffer_;
};

std::unique_ptr<ParticleSimulation>
ParticleSimulation::make(std::shared_ptr<const ProgramParts> program, gpu::Device& device,
                         std::int64_t width, std::int64_t height) {
    const auto& pipelines = program->particles;
    const auto size = PixelSize::of(width, height);
    if (!pipelines || !size)
        return nullptr;
    std::unique_ptr<ParticleSimulation> made(new ParticleSimulation);
    made->particles_ = device.newBuffer(
        static_cast<std::size_t>(pipelines->count * pipelines->stride), gpu::StorageMode::private_);
    if (!made->particles_)
        return nullptr;
    for (auto& trails : made->trails_)
        trails = trailsTexture(device, *size);
    if (!made->trails_[0] || !made->trails_[1])
        return nullptr;
    made->width_ = width;
    made->height_ = height;
    made->program_ = std::move(program);
    return made;
}

bool ParticleSimulation::follow(const ParticleSimulation& other, gpu::Device& device,
                                gpu::CommandQueue& queue) {
    const ParticlePipelines &mine = *program_->particles, &theirs = *other.program_->particles;
    if (other.step_ < 0 || mine.count != theirs.count || mine.stride != theirs.stride ||
        mine.record != theirs.record)
        return false;
    if (width_ == other.width_ && height_ == other.height_) {
        trails_ = other.trails_;
        current_ = other.current_;
    } else if (!scaleTrails(other, device, queue)) {
        return false;
    }
    particles_ = other.particles_;
    step_ = other.step_;
    return true;
}

bool ParticleSimulation::scaleTrails(const ParticleSimulation& other, gpu::Device& device,
                                     gpu::CommandQueue& queue) {
    const OverlayQuad copy(device, TargetFormats::trailsFormat);
    auto commands = queue.commandBuffer();
    auto encoder =
        commands ? commands->renderCommandEncoder({.color = {.texture = trails_[current_].get(),
                                                             .load = gpu::LoadAction::clear,
                                                             .clear = {.alpha = 0}}})
                 : std::nullopt;
    if (!encoder)
        return false;
    copy.draw(*encoder, other.image());
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    return commands->status() == gpu::CommandBufferStatus::completed;
}

std::int64_t ParticleSimulation::steps(double seconds) {
    constexpr double most = 9e18; // about the maximum of int64_t
    const double nearest = std::round(seconds * ShaderAssembler::stepRate);
    return nearest > 0 ? static_cast<std::int64_t>(std::min(nearest, most)) : 0;
}

TWUniforms ParticleSimulation::uniforms(std::int64_t step, const Mouse& mouse) const {
    constexpr auto rate = static_cast<float>(ShaderAssembler::stepRate);
    return frameUniforms({.time = static_cast<float>(step) / rate,
                          .timeDelta = 1 / rate,
                          .frame = static_cast<std::uint32_t>(step),
                          .mouse = mouse},
                         width_, height_);
}

void ParticleSimulation::advance(std::int64_t target, gpu::CommandBuffer& commands,
                                 const ParamValues& values, const Mouse& mouse,
                                 std::int64_t limit) {
    if (target < step_)
        reset();
    Params params(*this, values);
    const std::int64_t count = program_->particles->count;
    constexpr std::int64_t maximum = std::numeric_limits<std::uint32_t>::max();
    precondition(count <= maximum, "a count of particles fits into 32 bits", "count", count);
    for (; step_ < target && limit > 0; --limit) {
        const std::int64_t next = step_ + 1;
        precondition(next <= maximum, "a number of a step fits into 32 bits", "step", next);
        const Step step{next, static_cast<std::uint32_t>(count), uniforms(next, mouse),
                        params.of(next)};
        if (!encode(step, commands))
            return;
    }
}

bool ParticleSimulation::encode(const Step& step, gpu::CommandBuffer& commands) {
    const std::size_t target = step.number == 0 ? current_ : 1 - current_;
    if (!move(step, commands) || !paint(step, *trails_[target], commands))
        return false;
    current_ = target;
    step_ = step.number;
    return true;
}

// Spawns the particles in step 0, updates them in all others.
bool ParticleSimulation::move(const Step& step, gpu::CommandBuffer& commands) const {
    const ParticlePipelines& pipelines = *program_->particles;
    const auto& kernel = step.number == 0 ? *pipelines.spawn : *pipelines.update;
    auto encoder = commands.computeCommandEncoder();
    if (!encoder)
        return false;
    encoder->setComputePipelineState(kernel);
    encoder->setBuffer(*particles_, 0, 0);
    std::uint32_t index = 1;
    if (step.number > 0)
        encoder->setBytes(&step.uniforms, sizeof step.uniforms, index++);
    encoder->setBytes(step.params.data(), step.params.length(), index++);
    encoder->setBytes(&step.particleCount, sizeof step.particleCount, index);
    encoder->dispatchThreads({.width = step.particleCount}, hostThreadgroup(kernel));
    encoder->endEncoding();
    return true;
}

// Draws the trails of the last step through the episode's `fade`, then adds a point a particle.
// Step 0 begins with clear trails.
bool ParticleSimulation::paint(const Step& step, const gpu::Texture& target,
                               gpu::CommandBuffer& commands) const {
    const ParticlePipelines& pipelines = *program_->particles;
    auto encoder = commands.renderCommandEncoder(
        {.color = {.texture = &target, .load = gpu::LoadAction::clear, .clear = {.alpha = 0}}});
    if (!encoder)
        return false;
    if (step.number > 0) {
        encoder->setRenderPipelineState(*pipelines.fade);
        encoder->setFragmentTexture(trails_[current_].get(), 0);
        encoder->setFragmentBytes(&step.uniforms, sizeof step.uniforms, 0);
        encoder->setFragmentBytes(step.params.data(), step.params.length(), 1);
        encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
    }
    encoder->setRenderPipelineState(*pipelines.dots);
    encoder->setVertexBuffer(*particles_, 0, 0);
    encoder->setVertexBytes(&step.uniforms, sizeof step.uniforms, 1);
    encoder->setVertexBytes(step.params.data(), step.params.length(), 2);
    encoder->setFragmentBuffer(*particles_, 0, 0);
    encoder->setFragmentBytes(&step.uniforms, sizeof step.uniforms, 1);
    encoder->setFragmentBytes(step.params.data(), step.params.length(), 2);
    encoder->drawPrimitives(gpu::PrimitiveType::point, 0, step.particleCount);
    encoder->endEncoding();
    return true;
}

bool ParticleSimulation::warm(std::int64_t target, gpu::CommandQueue& queue,
                              const ParamValues& values, const Mouse& mouse,
                              const std::function<void()>& afterEach) {
    const std::int64_t goal = target - 1; // the frame does the last step
    if (goal < step_)
        reset();
    while (step_ < goal) {
        const std::int64_t before = step_;
        auto commands = queue.commandBuffer();
        if (!commands)
            return false;
        advance(std::min(goal, step_ + stepsPerCommandBuffer), *commands, values, mouse, noLimit);
        commands->commit();
        commands->waitUntilCompleted();
        if (commands->status() != gpu::CommandBufferStatus::completed || step_ == before)
            return false;
        hitLoopBudget_ |= commands->hitLoopBudget();
        if (afterEach)
            afterEach();
    }
    return true;
}

} // namespace tarnwick
