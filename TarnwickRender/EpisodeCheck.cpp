#include "TarnwickRender/EpisodeCheck.h"

#include "TarnwickRender/ShaderError.h"
#include "TarnwickRender/ShaderProgram.h"

namespace tarnwick {

EpisodeFindings checkEpisode(std::string_view episode, gpu::Device* device,
                             EpisodeWarnings warnings) {
    try {
        const CompiledEpisode compiled = CompiledEpisode::make(episode, device, warnings);
        if (device)
            ShaderProgram::make(compiled, *device, ShaderProgram::pixelFormat);
        const std::string& messages = compiled.library->warnings();
        return {true, DiagnosticParser::parse(messages), messages};
    } catch (const ShaderError& error) {
        return {false, error.diagnostics, error.raw};
    }
}

} // namespace tarnwick
