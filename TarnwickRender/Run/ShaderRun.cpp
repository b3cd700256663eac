#include "TarnwickRender/Run/ShaderRun.h"

#include "TarnwickRender/Program/ParamBuffer.h"

namespace tarnwick {
namespace {

// The colour behind the grid: nearly black, slightly warm.
constexpr gpu::ClearColor meshClearColor{.red = 0.035, .green = 0.027, .blue = 0.031, .alpha = 1};

gpu::RenderPassDescriptor meshPass(const MeshTarget& target) {
    return {.color = {.texture = target.color.get(),
                      .resolveTexture = target.resolved.get(),
                      .load = gpu::LoadAction::clear,
                      .store = gpu::StoreAction::multisampleResolve,
                      .clear = meshClearColor},
            .depth = {.texture = target.depth.get()}};
}

} // namespace

std::unique_ptr<ShaderRun> ShaderRun::make(std::shared_ptr<const ProgramParts> program,
                                           gpu::Device& device, std::int64_t width,
                                           std::int64_t height) {
    std::unique_ptr<ShaderRun> run(new ShaderRun);
    if (program->particles)
        run->simulation_ = ParticleSimulation::make(program, device, width, height);
    else if (program->mesh)
        run->mesh_ = MeshTarget::make(device, width, height);
    if (!run->simulation_ && !run->mesh_)
        return nullptr;
    run->program_ = std::move(program);
    run->width_ = width;
    run->height_ = height;
    return run;
}

const gpu::Texture* ShaderRun::picture() const {
    return simulation_ ? &simulation_->image() : mesh_->resolved.get();
}

void ShaderRun::restart() {
    if (simulation_)
        simulation_->reset();
}

bool ShaderRun::follow(const ShaderRun& other, gpu::Device& device, gpu::CommandQueue& queue) {
    return !simulation_ ||
           (other.simulation_ && simulation_->follow(*other.simulation_, device, queue));
}

void ShaderRun::setValuesAt(ValuesAt valuesAt) {
    if (simulation_)
        simulation_->setValuesAt(std::move(valuesAt));
}

void ShaderRun::prepare(const TWUniforms& uniforms, gpu::CommandBuffer& commands,
                        const ParamValues& values, std::int64_t limit) {
    if (simulation_)
        simulation_->advance(ParticleSimulation::steps(uniforms.time), commands, values,
                             uniforms.mouse, limit);
    else
        drawMesh(uniforms, commands, values);
}

void ShaderRun::drawMesh(const TWUniforms& uniforms, gpu::CommandBuffer& commands,
                         const ParamValues& values) const {
    const MeshPipelines& pipelines = *program_->mesh;
    const ParamBuffer params(program_->params, values);
    const auto cells = static_cast<std::uint32_t>(pipelines.cells);
    auto encoder = commands.renderCommandEncoder(meshPass(*mesh_));
    if (!encoder)
        return;
    encoder->setVertexBytes(&uniforms, sizeof uniforms, 0);
    encoder->setVertexBytes(params.data(), params.length(), 1);
    encoder->setVertexBytes(&cells, sizeof cells, 2);
    encoder->setFragmentBytes(&uniforms, sizeof uniforms, 0);
    encoder->setFragmentBytes(params.data(), params.length(), 1);
    if (pipelines.background) {
        encoder->setRenderPipelineState(*pipelines.background);
        encoder->setDepthStencilState(*pipelines.behind);
        encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
    }
    encoder->setRenderPipelineState(*pipelines.grid);
    encoder->setDepthStencilState(*pipelines.depth);
    encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, cells * cells * 6);
    encoder->endEncoding();
}

bool ShaderRun::warm(double time, gpu::CommandQueue& queue, const ParamValues& values,
                     const ParticleSimulation::Mouse& mouse,
                     const std::function<void()>& afterEach) {
    return !simulation_ ||
           simulation_->warm(ParticleSimulation::steps(time), queue, values, mouse, afterEach);
}

} // namespace tarnwick
