#include "TarnwickRender/HostFunctions.h"

#include "TarnwickRender/ShaderError.h"

namespace tarnwick {

std::unique_ptr<gpu::Function> hostFunction(const gpu::Library& library, std::string_view name) {
    auto function = library.newFunction(name);
    if (!function)
        throw ShaderError("The host's " + std::string(name) +
                          " entry point is missing from the compiled library.");
    return function;
}

std::unique_ptr<gpu::ComputePipelineState>
hostKernel(gpu::Device& device, const gpu::Library& library, std::string_view name) {
    return device.newComputePipelineState(*hostFunction(library, name));
}

HostStages::HostStages(const gpu::Library& library, std::string_view vertexName,
                       std::string_view fragmentName, gpu::PixelFormat colorFormat)
    : vertex(hostFunction(library, vertexName)), fragment(hostFunction(library, fragmentName)) {
    descriptor.vertex = vertex.get();
    descriptor.fragment = fragment.get();
    descriptor.color.format = colorFormat;
}

} // namespace tarnwick
