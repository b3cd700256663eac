#include "programs/Episode/EpisodeProgram.h"

#include "TarnwickRender/EpisodeCheck.h"
#include "TarnwickRender/ProgramFrames.h"
#include "programs/Terminal/Findings.h"

#include <limits>

namespace tarnwick {

namespace {

[[noreturn]] void refuse(std::string_view path, std::string_view episode,
                         std::span<const Diagnostic> diagnostics, const std::string& raw) {
    printFindings(path, episode, diagnostics);
    failure(std::string(path) + " does not compile" + (diagnostics.empty() ? ": " + raw : "."));
}

} // namespace

std::shared_ptr<const ShaderProgram> programOf(std::string_view path, const std::string& episode,
                                               gpu::Device& device) {
    ProgressBar bar("");
    return programOf(path, episode, device, bar);
}

std::shared_ptr<const ShaderProgram> programOf(std::string_view path, const std::string& episode,
                                               gpu::Device& device, ProgressBar& bar) {
    bar.doing("Compiling " + std::string(path));
    try {
        return ShaderProgram::compile(episode, device, ShaderProgram::pixelFormat);
    } catch (const ShaderError& error) {
        bar.hide();
        refuse(path, episode, error.diagnostics, error.raw);
    }
}

EpisodeFindings checkedEpisode(std::string_view path, const std::string& episode,
                               gpu::Device* device, EpisodeWarnings warnings) {
    ProgressBar bar("");
    bar.doing("Compiling " + std::string(path));
    return checkEpisode(episode, device, warnings);
}

void checkCompiles(std::string_view path, const std::string& episode) {
    const auto device = gpu::Device::systemDefault();
    const EpisodeFindings findings = checkedEpisode(path, episode, device.get());
    if (!findings.compiles)
        refuse(path, episode, findings.diagnostics, findings.raw);
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
