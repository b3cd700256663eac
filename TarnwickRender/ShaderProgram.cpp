#include "TarnwickRender/ShaderProgram.h"

#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/Program/PipelineTask.h"
#include "TarnwickRender/Run/ShaderRun.h"

#include <algorithm>
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

// Inputs are bound only if the compiled function reads them.
bool readsPreviousFrame(const gpu::Library& library) {
    const auto fragment = library.newFunction(ShaderAssembler::fragmentName);
    return fragment && std::ranges::any_of(fragment->entryPoint().resources, [](auto& resource) {
               return resource.kind == msl::ResourceKind::sampledTexture &&
                      resource.index == ShaderAssembler::previousTexture;
           });
}

// All pipelines are made at the same time. The final pass is asked last, so that errors of the
// kind's own functions are reported first.
ProgramParts makeParts(const CompiledEpisode& compiled, gpu::Device& device,
                       gpu::PixelFormat pixelFormat) {
    const AssembledShader& shader = compiled.shader;
    const gpu::Library& library = *compiled.library;
    const HostStages stages(library, ShaderAssembler::vertexName, ShaderAssembler::fragmentName,
                            pixelFormat);
    auto picture = pipelineTask([&] { return device.newRenderPipelineState(stages.descriptor); });
    auto particles = pipelineTask([&]() -> std::optional<ParticlePipelines> {
        if (!shader.isParticles())
            return std::nullopt;
        return makeParticlePipelines(device, library, shader);
    });
    auto mesh = pipelineTask([&]() -> std::optional<MeshPipelines> {
        if (!shader.isMesh())
            return std::nullopt;
        return makeMeshPipelines(device, library, shader.grid,
                                 shader.hasBackground ? MeshBackground::byEpisode
                                                      : MeshBackground::none);
    });
    ProgramParts parts{.params = shader.params};
    if (shader.hasSound) {
        const auto sound = hostFunction(library, ShaderAssembler::soundName, msl::Stage::kernel);
        parts.soundPipeline = device.newComputePipelineState(*sound);
        parts.soundFunction = sound->sharedEntryPoint();
    }
    parts.particles = particles.get();
    parts.mesh = mesh.get();
    if (shader.usesInputs) {
        parts.blank = blankTexture(device);
        parts.readsPrevious = readsPreviousFrame(library);
    }
    parts.pipeline = picture.get();
    return parts;
}

} // namespace

std::shared_ptr<const ShaderProgram>
ShaderProgram::compile(const Episode& episode, gpu::Device& device, gpu::PixelFormat pixelFormat) {
    return make(CompiledEpisode::make(episode, &device), device, pixelFormat);
}

std::shared_ptr<const ShaderProgram> ShaderProgram::make(const CompiledEpisode& compiled,
                                                         gpu::Device& device,
                                                         gpu::PixelFormat pixelFormat) {
    try {
        return std::shared_ptr<const ShaderProgram>(new ShaderProgram(
            std::make_shared<const ProgramParts>(makeParts(compiled, device, pixelFormat))));
    } catch (const gpu::DeviceError& error) {
        throw ShaderError(error.what());
    }
}

void ShaderProgram::draw(gpu::RenderCommandEncoder& encoder, const TWUniforms& uniforms,
                         const ParamValues& values, const ShaderRun* run,
                         const ShaderInputs* inputs) const {
    if (needsRun()) {
        const gpu::Texture* picture =
            run != nullptr && &run->program() == parts_.get() ? run->picture() : nullptr;
        if (picture == nullptr)
            return;
        encoder.setFragmentTexture(picture, 0);
    }
    // After the run's picture: with both, texture 0 is the spectrum.
    if (usesInputs())
        bindInputs(encoder, inputs != nullptr ? *inputs : ShaderInputs::none());
    const ParamBuffer params(parts_->params, values);
    encoder.setRenderPipelineState(*parts_->pipeline);
    encoder.setFragmentBytes(&uniforms, sizeof uniforms, 0);
    encoder.setFragmentBytes(params.data(), params.length(), 1);
    encoder.drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
}

void ShaderProgram::bindInputs(gpu::RenderCommandEncoder& encoder,
                               const ShaderInputs& inputs) const {
    auto orBlank = [this](const gpu::Texture* texture) {
        return texture ? texture : parts_->blank.get();
    };
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
