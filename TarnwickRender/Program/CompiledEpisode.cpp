#include "TarnwickRender/Program/CompiledEpisode.h"

#include "TarnwickCore/Findings/Encoding.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/ShaderError.h"

#include <string>

namespace tarnwick {
namespace {

// An episode may come from anyone, and nothing bounds the accesses of pointers that are kept in
// buffers: on a CPU driver they reach all memory of this process.
std::unique_ptr<gpu::Library> compiledLibrary(const AssembledShader& shader, gpu::Device* device,
                                              EpisodeWarnings warnings) {
    const std::string moreWarningsIn(warnings == EpisodeWarnings::more ? ShaderAssembler::fileName
                                                                       : "");
    msl::Target target = device ? device->compilerTarget() : msl::Target();
    target.followsAddresses = false;
    try {
        return gpu::newLibrary(shader.source, {.target = target, .moreWarningsIn = moreWarningsIn});
    } catch (const gpu::LibraryError& error) {
        throw compilerError(shader, error.what(),
                            error.isCompilersFault ? Fault::ofCompiler : Fault::ofEpisode);
    }
}

// In the form of the compiler's messages.
ShaderError shaderError(const Diagnostic& error) {
    return ShaderError(std::string(ShaderAssembler::fileName) + ":" + std::to_string(error.line) +
                           ":" + std::to_string(error.column) + ": error: " + error.message + "\n",
                       {error});
}

} // namespace

CompiledEpisode CompiledEpisode::make(const Episode& episode, gpu::Device* device,
                                      EpisodeWarnings warnings) {
    if (const auto error = encodingError(episode.text))
        throw shaderError(*error);
    const std::size_t params = episode.params().size();
    if (params > ParamBuffer::mostParams)
        throw ShaderError("The episode declares " + std::to_string(params) +
                          " parameters; at most " + std::to_string(ParamBuffer::mostParams) +
                          " can be passed to the GPU.");
    return {.shader = episode.shader, .library = compiledLibrary(episode.shader, device, warnings)};
}

} // namespace tarnwick
