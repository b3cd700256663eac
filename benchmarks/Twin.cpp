#include "benchmarks/Twin.h"

#include <shaderc/shaderc.hpp>

namespace tarnwick::bench {

std::vector<std::uint32_t> compiledGLSL(const std::string& source, TwinStage stage,
                                        const std::string& macro) {
    static const shaderc::Compiler compiler;
    shaderc::CompileOptions options;
    options.SetOptimizationLevel(shaderc_optimization_level_performance);
    options.SetTargetEnvironment(shaderc_target_env_vulkan, shaderc_env_version_vulkan_1_3);
    if (!macro.empty())
        options.AddMacroDefinition(macro);
    const shaderc_shader_kind kind = stage == TwinStage::vertex     ? shaderc_vertex_shader
                                     : stage == TwinStage::fragment ? shaderc_fragment_shader
                                                                    : shaderc_compute_shader;
    const auto result = compiler.CompileGlslToSpv(source, kind, "twin.glsl", options);
    if (result.GetCompilationStatus() != shaderc_compilation_status_success)
        throw TwinError(result.GetErrorMessage());
    return {result.begin(), result.end()};
}

msl::EntryPoint compiledTwin(const std::string& source, std::size_t paramCount) {
    msl::EntryPoint twin;
    twin.name = "twin";
    twin.stage = msl::Stage::fragment;
    twin.words = compiledGLSL(source, TwinStage::fragment);
    twin.colorAttachments = 1;
    const auto uniformBlock = [&](std::uint32_t index, std::uint32_t size) {
        msl::Resource resource;
        resource.kind = msl::ResourceKind::uniformBuffer;
        resource.index = index;
        resource.binding = 32 + index;
        resource.size = size;
        twin.resources.push_back(resource);
    };
    uniformBlock(0, 32);
    uniformBlock(1, static_cast<std::uint32_t>(paramCount * sizeof(float)));
    return twin;
}

} // namespace tarnwick::bench
