#include "benchmarks/Case.h"

#include "TarnwickCore/ShaderAssembler.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace tarnwick::bench {

namespace {

// Bindings of a fragment stage: TarnwickMSL/EntryPoint.h.
constexpr const char* uniforms = R"(#version 450
#extension GL_EXT_shader_explicit_arithmetic_types_float16 : enable
layout(set = 0, binding = 32) uniform Uniforms {
    vec2 resolution;
    float time;
    float timeDelta;
    vec2 mouse;
    uint frame;
    uint pad;
} u;
layout(location = 0) in vec2 varyingUV;
layout(location = 0) out vec4 colour;
layout(set = 0, binding = 33) uniform Params {
)";

std::string wholeTwin(const std::string& body, const std::vector<ParamDecl>& params) {
    std::string whole = uniforms;
    for (const ParamDecl& param : params)
        whole += "    float " + param.name + ";\n";
    if (params.empty())
        whole += "    float unused;\n";
    return whole + "} p;\n" + body + "void main() { colour = shade(varyingUV); }\n";
}

} // namespace

std::string fileText(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<Case> cases(const std::filesystem::path& folder) {
    std::vector<Case> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::filesystem::path twin =
            std::filesystem::path(entry.path()).replace_extension(".frag");
        if (entry.path().extension() != ".metal" || !std::filesystem::exists(twin))
            continue;
        const AssembledShader shader = ShaderAssembler::assemble(fileText(entry.path()));
        Case one{std::filesystem::path(entry.path())
                     .replace_extension()
                     .lexically_relative(folder)
                     .string(),
                 shader.source,
                 wholeTwin(fileText(twin), shader.params),
                 {}};
        for (const ParamDecl& param : shader.params)
            one.values.push_back(param.defaultValue);
        if (one.values.empty())
            one.values.push_back(0);
        found.push_back(std::move(one));
    }
    std::sort(found.begin(), found.end(),
              [](const Case& a, const Case& b) { return a.name < b.name; });
    return found;
}

std::vector<Case> episodeCases(const std::filesystem::path& folder) {
    std::vector<Case> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".metal")
            found.push_back({"episodes/" + entry.path().stem().string(),
                             ShaderAssembler::assemble(fileText(entry.path())).source,
                             {},
                             {}});
    std::ranges::sort(found, {}, &Case::name);
    return found;
}

} // namespace tarnwick::bench
