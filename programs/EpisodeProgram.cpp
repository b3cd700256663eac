#include "programs/EpisodeProgram.h"

#include "TarnwickRender/ParticleSimulation.h"
#include "programs/Findings.h"

#include <cstdio>
#include <limits>

namespace tarnwick {

std::shared_ptr<const ShaderProgram> programOf(std::string_view path, const std::string& episode,
                                               gpu::Device& device) {
    try {
        return ShaderProgram::compile(episode, device, ShaderProgram::pixelFormat);
    } catch (const ShaderError& error) {
        const std::string findings = findingsText(path, error.diagnostics);
        std::fputs(findings.c_str(), stderr);
        failure(std::string(path) + " does not compile" +
                (findings.empty() ? ": " + error.raw : "."));
    }
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
        failure("There is no device to draw with; tarnwick devices lists them.");
    return device;
}

} // namespace tarnwick
