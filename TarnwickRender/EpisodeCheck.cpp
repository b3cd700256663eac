#include "TarnwickRender/EpisodeCheck.h"

#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/ShaderError.h"
#include "TarnwickRender/ShaderProgram.h"

namespace tarnwick {
namespace {

constexpr std::int64_t smallSide = 16; // pixels; the room for particles does not depend on it

// Empty if there is room.
std::string absence(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device) {
    if (ProgramFrames::make(program, device, smallSide, smallSide))
        return {};
    return ProgramFrames::absence(*program, device, smallSide, smallSide);
}

} // namespace

EpisodeFindings checkEpisode(const Episode& episode, gpu::Device* device,
                             EpisodeWarnings warnings) {
    try {
        const CompiledEpisode compiled = CompiledEpisode::make(episode, device, warnings);
        const std::string& messages = compiled.library->warnings();
        EpisodeFindings findings{
            .compiles = true, .diagnostics = DiagnosticParser::parse(messages), .raw = messages};
        if (!device) {
            checkHostFunctions(*compiled.library, compiled.shader);
            return findings;
        }
        const std::string absent =
            absence(ShaderProgram::make(compiled, *device, ShaderProgram::pixelFormat), *device);
        if (!absent.empty()) {
            findings.hasRoom = false;
            findings.raw = absent;
        }
        return findings;
    } catch (const ShaderError& error) {
        return {.compiles = false, .diagnostics = error.diagnostics, .raw = error.raw};
    }
}

} // namespace tarnwick
