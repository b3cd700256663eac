#include "TarnwickRender/ShaderProgram.h"

#include "TarnwickRender/ParamBuffer.h"
#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/ShaderRun.h"

#include <array>

namespace tarnwick {
namespace {

std::unique_ptr<gpu::Texture> blankTexture(gpu::Device& device) {
    auto texture = device.newTexture({.format = gpu::PixelFormat::rgba8Unorm});
    if (!texture)
        throw ShaderError("Could not make the inputs' blank texture.");
    const std::array<std::uint8_t, 4> transparentBlack{};
    texture->replace({.width = 1, .height = 1}, 0, transparentBlack.data(), 4);
    return texture;
}

} // namespace

std::shared_ptr<const ShaderProgram> ShaderProgram::compile(std::string_view episode,
                                                            gpu::Device& device,
                                                            gpu::PixelFormat pixelFormat) {
    return make(CompiledEpisode::make(episode, &device), device, pixelFormat);
}

std::shared_ptr<const ShaderProgram> ShaderProgram::make(const CompiledEpisode& compiled,
                                                         gpu::Device& device,
                                                         gpu::PixelFormat pixelFormat) {
    std::shared_ptr<ShaderProgram> program(new ShaderProgram);
    try {
        program->build(device, compiled.shader, *compiled.library, pixelFormat);
    } catch (const gpu::DeviceError& error) {
        throw ShaderError(error.what());
    }
    program->params_ = compiled.shader.params;
    return program;
}

void ShaderProgram::build(gpu::Device& device, const AssembledShader& shader,
                          const gpu::Library& library, gpu::PixelFormat pixelFormat) {
    const HostStages stages(library, ShaderAssembler::vertexName, ShaderAssembler::fragmentName,
                            pixelFormat);
    if (shader.hasSound)
        soundPipeline_ = hostKernel(device, library, ShaderAssembler::soundName);
    if (shader.isParticles())
        particles_ = makeParticlePipelines(device, library, shader.particles);
    if (shader.isMesh())
        mesh_ = makeMeshPipelines(device, library, shader.grid,
                                  shader.hasBackground ? MeshBackground::byEpisode
                                                       : MeshBackground::none);
    if (shader.usesInputs)
        blank_ = blankTexture(device);
    // Last, so that what is particular to a kind is reported first.
    pipeline_ = device.newRenderPipelineState(stages.descriptor);
}

void ShaderProgram::draw(gpu::RenderCommandEncoder& encoder, const TWUniforms& uniforms,
                         const ParamValues& values, const ShaderRun* run,
                         const ShaderInputs* inputs) const {
    if (needsRun()) {
        const gpu::Texture* picture =
            run != nullptr && &run->program() == this ? run->picture() : nullptr;
        if (picture == nullptr)
            return;
        encoder.setFragmentTexture(picture, 0);
    }
    // After the run's picture: where an episode has both, texture 0 is the spectrum.
    if (usesInputs())
        bindInputs(encoder, inputs != nullptr ? *inputs : ShaderInputs::none());
    const ParamBuffer params(params_, values);
    encoder.setRenderPipelineState(*pipeline_);
    encoder.setFragmentBytes(&uniforms, sizeof uniforms, 0);
    encoder.setFragmentBytes(params.data(), params.length(), 1);
    encoder.drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
}

void ShaderProgram::bindInputs(gpu::RenderCommandEncoder& encoder,
                               const ShaderInputs& inputs) const {
    auto orBlank = [this](const gpu::Texture* texture) { return texture ? texture : blank_.get(); };
    encoder.setFragmentBytes(inputs.audio.data(), sizeof inputs.audio,
                             ShaderAssembler::audioBuffer);
    encoder.setFragmentTexture(orBlank(inputs.spectrum), ShaderAssembler::spectrumTexture);
    for (std::uint32_t channel = 0; channel < 4; ++channel)
        encoder.setFragmentTexture(
            orBlank(channel < inputs.channels.size() ? inputs.channels[channel] : nullptr),
            ShaderAssembler::spectrumTexture + 1 + channel);
    encoder.setFragmentTexture(orBlank(inputs.previous), ShaderAssembler::previousTexture);
}

} // namespace tarnwick
