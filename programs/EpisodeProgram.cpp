#include "programs/EpisodeProgram.h"

#include "programs/CommandError.h"
#include "programs/Findings.h"

#include <cstdio>

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

std::shared_ptr<gpu::Device> drawingDevice() {
    auto device = gpu::Device::systemDefault();
    if (!device)
        failure("There is no device to draw with; tarnwick devices lists them.");
    return device;
}

} // namespace tarnwick
