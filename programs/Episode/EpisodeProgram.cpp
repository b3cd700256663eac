#include "programs/Episode/EpisodeProgram.h"

#include "TarnwickCore/Findings.h"
#include "TarnwickRender/EpisodeCheck.h"
#include "TarnwickRender/ProgramFrames.h"
#include "programs/Terminal/Findings.h"

#include <limits>

namespace tarnwick {

namespace {

[[noreturn]] void refuse(const Episode& episode, std::span<const Diagnostic> diagnostics,
                         const std::string& raw) {
    printFindings(episode, diagnostics);
    failure(episode.path + " does not compile" +
            (diagnostics.empty() ? ": " + firstErrorLine(raw) : "."));
}

} // namespace

std::shared_ptr<const ShaderProgram> programOf(const Episode& episode, gpu::Device& device) {
    ProgressBar bar("");
    return programOf(episode, device, bar);
}

std::shared_ptr<const ShaderProgram> programOf(const Episode& episode, gpu::Device& device,
                                               ProgressBar& bar) {
    bar.doing("Compiling " + episode.path);
    try {
        return ShaderProgram::compile(episode, device, ShaderProgram::pixelFormat);
    } catch (const ShaderError& error) {
        bar.hide();
        refuse(episode, error.diagnostics, error.raw);
    }
}

EpisodeFindings checkedEpisode(const Episode& episode, gpu::Device* device,
                               EpisodeWarnings warnings) {
    ProgressBar bar("");
    bar.doing("Compiling " + episode.path);
    return checkEpisode(episode, device, warnings);
}

void checkCompiles(const Episode& episode) {
    const auto device = gpu::Device::systemDefault();
    const EpisodeFindings findings = checkedEpisode(episode, device.get());
    if (!findings.compiles)
        refuse(episode, findings.diagnostics, findings.raw);
}

// The steps of a simulation are numbered in 32 bits.
void checkSteps(const ShaderProgram& program, double time, std::string_view what) {
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    if (program.isParticles() && ParticleSimulation::steps(static_cast<float>(time)) > last)
        failure("A particle episode has " + std::string(what) + " up to " +
                std::to_string(last / ShaderAssembler::stepRate) + " seconds.");
}

std::shared_ptr<gpu::Device> drawingDevice() {
    auto device = gpu::Device::systemDefault();
    if (!device)
        failure(gpu::Device::absence());
    return device;
}

} // namespace tarnwick
