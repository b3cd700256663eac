#include "TarnwickRender/Program/HostFunctions.h"

#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/ShaderError.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

using msl::Stage;

// The resources that a host function may take: the number of indices of each kind, from 0 on.
struct HostInterface {
    std::string_view name;
    Stage stage;
    std::uint32_t buffers;     // of any kind
    std::uint32_t textures;    // 2D, of float, sampled
    bool hasMemory = false;    // buffer(0) is `device` memory, all others are records
    bool writesMemory = false; // the function writes it
};

constexpr bool memory = true, written = true;
using Names = ShaderAssembler;

// clang-format off
constexpr std::array interfaces{
    HostInterface{Names::vertexName,       Stage::vertex,   0, 0},
    HostInterface{Names::fragmentName,     Stage::fragment, Names::audioBuffer + 1, Names::previousTexture + 1},
    HostInterface{Names::soundName,        Stage::kernel,   3, 0, memory, written},
    HostInterface{Names::particleSizeName, Stage::kernel,   1, 0, memory, written},
    HostInterface{Names::spawnName,        Stage::kernel,   3, 0, memory, written},
    HostInterface{Names::updateName,       Stage::kernel,   4, 0, memory, written},
    HostInterface{Names::fadeName,         Stage::fragment, 2, 1},
    HostInterface{Names::dotVertexName,    Stage::vertex,   3, 0, memory},
    HostInterface{Names::dotFragmentName,  Stage::fragment, 3, 0, memory},
    HostInterface{Names::meshVertexName,   Stage::vertex,   3, 0},
    HostInterface{Names::meshFragmentName, Stage::fragment, 2, 0},
    HostInterface{Names::backgroundName,   Stage::fragment, 2, 0},
    HostInterface{soundCheckName,  Stage::kernel,   3, 0, memory, written},
};
// clang-format on

// The longest record of the host: the parameters.
constexpr std::size_t longestRecord = ParamBuffer::mostParams * sizeof(float);

bool isBound(const msl::Resource& resource, const HostInterface& host) {
    switch (resource.kind) {
    case msl::ResourceKind::uniformBuffer:
        return resource.index >= host.hasMemory && resource.index < host.buffers &&
               resource.size <= longestRecord;
    case msl::ResourceKind::storageBuffer:
        return host.hasMemory && resource.index == 0 && (host.writesMemory || !resource.isWritten);
    case msl::ResourceKind::sampledTexture:
        return resource.index < host.textures && resource.shape == msl::TextureShape::d2 &&
               resource.component == msl::TextureComponent::float_ && !resource.isDepth;
    case msl::ResourceKind::storageTexture:
    case msl::ResourceKind::sampler:
    case msl::ResourceKind::accelerationStructure:
    case msl::ResourceKind::bufferAddresses:
    case msl::ResourceKind::gridSize:
    case msl::ResourceKind::viewportSize:
        return false;
    case msl::ResourceKind::constantSampler:
    case msl::ResourceKind::colorInput:
    case msl::ResourceKind::loopReport:
        break;
    }
    return true; // of the GPU layer itself
}

// A host kernel declares neither size nor memory of threadgroups: it runs with any. No host
// function takes patches, or attributes from vertex buffers.
bool isHosts(const msl::EntryPoint& function, const HostInterface& host) {
    return function.mostThreads == 0 && function.threadgroupBytes == 0 &&
           function.threadgroupPointers.empty() && function.attributes.empty() &&
           function.patch == msl::PatchKind::none &&
           std::all_of(function.resources.begin(), function.resources.end(),
                       [&](const msl::Resource& resource) { return isBound(resource, host); });
}

[[noreturn]] void reportMissing(std::string_view name) {
    if (name == Names::vertexName || name == Names::fragmentName)
        throw ShaderError("The host entry points are missing from the compiled library.");
    throw ShaderError("The host's " + std::string(name == Names::soundName ? "sound" : name) +
                      " entry point is missing from the compiled library.");
}

bool isOfKind(std::string_view name, const AssembledShader& shader) {
    using List = std::initializer_list<std::string_view>;
    const auto isOneOf = [name](List names) {
        return std::ranges::find(names, name) != names.end();
    };
    if (isOneOf({Names::vertexName, Names::fragmentName}))
        return true;
    if (name == Names::soundName)
        return shader.hasSound;
    if (name == Names::backgroundName)
        return shader.hasBackground;
    if (isOneOf({Names::meshVertexName, Names::meshFragmentName}))
        return shader.isMesh();
    return name != soundCheckName && shader.isParticles();
}

} // namespace

std::unique_ptr<gpu::Function> findHostFunction(const gpu::Library& library, std::string_view name,
                                                Stage stage) {
    auto function = library.newFunction(name);
    if (!function || function->stage() != stage)
        return nullptr;
    const auto host = std::ranges::find(interfaces, name, &HostInterface::name);
    return host == interfaces.end() || isHosts(function->entryPoint(), *host) ? std::move(function)
                                                                              : nullptr;
}

std::unique_ptr<gpu::Function> hostFunction(const gpu::Library& library, std::string_view name,
                                            Stage stage) {
    auto function = findHostFunction(library, name, stage);
    if (!function)
        reportMissing(name);
    return function;
}

void checkHostFunctions(const gpu::Library& library, const AssembledShader& shader) {
    for (const HostInterface& host : interfaces)
        if (isOfKind(host.name, shader))
            hostFunction(library, host.name, host.stage);
}

std::unique_ptr<gpu::ComputePipelineState>
hostKernel(gpu::Device& device, const gpu::Library& library, std::string_view name) {
    return device.newComputePipelineState(*hostFunction(library, name, Stage::kernel));
}

gpu::Size hostThreadgroup(const gpu::ComputePipelineState& kernel) {
    constexpr std::uint32_t most = 256;
    return {.width = std::min(kernel.maxTotalThreadsPerThreadgroup(), most)};
}

HostStages::HostStages(const gpu::Library& library, std::string_view vertexName,
                       std::string_view fragmentName, gpu::PixelFormat colorFormat)
    : vertex(hostFunction(library, vertexName, Stage::vertex)),
      fragment(hostFunction(library, fragmentName, Stage::fragment)) {
    descriptor.vertex = vertex.get();
    descriptor.fragment = fragment.get();
    descriptor.color.format = colorFormat;
}

} // namespace tarnwick
