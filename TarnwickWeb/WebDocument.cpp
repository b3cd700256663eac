#include "TarnwickWeb/WebDocument.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickWeb/WebError.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <span>
#include <string_view>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

std::string_view stageName(msl::Stage stage) {
    return stage == msl::Stage::vertex     ? "vertex"
           : stage == msl::Stage::fragment ? "fragment"
                                           : "kernel";
}

std::string_view addressMode(msl::SamplerAddress address) {
    switch (address) {
    case msl::SamplerAddress::clampToEdge:
        return "clamp-to-edge";
    case msl::SamplerAddress::repeat:
        return "repeat";
    case msl::SamplerAddress::mirroredRepeat:
        return "mirror-repeat";
    case msl::SamplerAddress::clampToZero:
    case msl::SamplerAddress::clampToBorder:
    case msl::SamplerAddress::mirrorClampToEdge:
        break;
    }
    precondition(false, "the texts of WGSL compute other address modes of constant samplers");
    return "";
}

std::string_view filterName(msl::SamplerFilter filter) {
    return filter == msl::SamplerFilter::linear ? "linear" : "nearest";
}

// WebGPU, 6.1 "GPUSampler": anisotropy requires linear filters. Without levels only the first is
// taken, and with 0.25 the minifying filter is still used.
ordered_json samplerDocument(std::uint64_t bits) {
    const msl::SamplerState state = msl::unpackSampler(bits);
    if (state.compares)
        throw WebError("Pages have no depth textures to compare with.");
    const bool isLinear = state.mag == msl::SamplerFilter::linear &&
                          state.min == msl::SamplerFilter::linear &&
                          state.mip == msl::SamplerMipFilter::linear;
    const bool hasLevels = state.mip != msl::SamplerMipFilter::none;
    const float least = hasLevels ? state.lodMin : 0.0f;
    return {{"u", addressMode(state.s)},
            {"v", addressMode(state.t)},
            {"w", addressMode(state.r)},
            {"mag", filterName(state.mag)},
            {"min", filterName(state.min)},
            {"mip", state.mip == msl::SamplerMipFilter::linear ? "linear" : "nearest"},
            {"leastLevel", least},
            {"mostLevel", hasLevels ? std::max(least, state.lodMax) : 0.25f},
            {"anisotropy", isLinear ? state.maxAnisotropy : 1}};
}

std::string_view kindName(msl::ResourceKind kind, const std::string& function) {
    switch (kind) {
    case msl::ResourceKind::uniformBuffer:
        return "uniform";
    case msl::ResourceKind::storageBuffer:
        return "memory";
    case msl::ResourceKind::sampledTexture:
        return "texture";
    case msl::ResourceKind::constantSampler:
        return "sampler";
    case msl::ResourceKind::loopReport:
        return "loopReport";
    case msl::ResourceKind::gridSize:
        return "gridSize";
    case msl::ResourceKind::viewportSize:
        return "viewportSize";
    case msl::ResourceKind::storageTexture:
    case msl::ResourceKind::sampler:
    case msl::ResourceKind::colorInput:
    case msl::ResourceKind::accelerationStructure:
    case msl::ResourceKind::bufferAddresses:
        break;
    }
    throw WebError("The function " + function + " takes an argument that pages do not have.");
}

ordered_json resourceDocument(const msl::Resource& resource, const std::string& function) {
    ordered_json document{{"kind", kindName(resource.kind, function)},
                          {"binding", resource.binding},
                          {"index", resource.index},
                          {"written", resource.isWritten}};
    if (resource.kind == msl::ResourceKind::constantSampler)
        document["sampler"] = samplerDocument(resource.samplerState);
    return document;
}

ordered_json functionDocument(const msl::EntryPoint& function) {
    ordered_json resources = ordered_json::array(), constants = ordered_json::array();
    for (const msl::Resource& resource : function.resources)
        resources.push_back(resourceDocument(resource, function.name));
    for (const msl::Override& constant : function.overrides)
        constants.push_back(constant.id);
    return {{"stage", stageName(function.stage)},
            {"code", function.text},
            {"resources", std::move(resources)},
            {"constants", std::move(constants)},
            {"features", function.features}};
}

ordered_json keysDocument(std::span<const KeyframeTracks::Key> keys) {
    ordered_json document = ordered_json::array();
    for (const KeyframeTracks::Key& key : keys)
        document.push_back(
            {{"time", key.time}, {"value", asWritten(key.value)}, {"ease", rawValue(key.ease)}});
    return document;
}

ordered_json paramsDocument(const Episode& episode, const Settings& settings) {
    ordered_json document = ordered_json::array();
    for (const ParamDecl& param : episode.params()) {
        const auto set = settings.values.find(param.name);
        const float value = set == settings.values.end() ? param.defaultValue : set->second;
        document.push_back({{"name", param.name},
                            {"value", asWritten(value)},
                            {"min", asWritten(param.min)},
                            {"max", asWritten(param.max)},
                            {"detail", param.detail},
                            {"keys", keysDocument(settings.keys.keys(param.name))}});
    }
    return document;
}

bool readsPrevious(const WebProgram& program) {
    const msl::EntryPoint* final = program.functionNamed(ShaderAssembler::fragmentName);
    return final && std::ranges::any_of(final->resources, [](const msl::Resource& resource) {
               return resource.kind == msl::ResourceKind::sampledTexture &&
                      resource.index == ShaderAssembler::previousTexture;
           });
}

// JSON has no infinity.
double finite(double seconds, double byDefault) {
    return std::isfinite(seconds) ? seconds : byDefault;
}

} // namespace

std::string webTitle(const Episode& episode) {
    return episode.meta.title != EpisodeMeta().title
               ? episode.meta.title
               : std::filesystem::path(episode.path).stem().string();
}

std::string webDocument(const Episode& episode, const Settings& settings,
                        const WebProgram& program) {
    const AssembledShader& shader = episode.shader;
    const EpisodeMeta& meta = episode.meta;
    ordered_json functions = ordered_json::object();
    for (const msl::EntryPoint& function : program.functions)
        functions[function.name] = functionDocument(function);
    const ordered_json document{{"version", webDocumentVersion},
                                {"kind", shader.isMesh()        ? "grid"
                                         : shader.isParticles() ? "particles"
                                                                : "fragment"},
                                {"title", webTitle(episode)},
                                {"teaches", meta.teaches},
                                {"still", finite(meta.still, EpisodeMeta().still)},
                                {"length", finite(meta.length, EpisodeMeta().length)},
                                {"params", paramsDocument(episode, settings)},
                                {"usesInputs", shader.usesInputs},
                                {"readsPrevious", shader.usesInputs && readsPrevious(program)},
                                {"hasSound", shader.hasSound},
                                {"particles", shader.particles},
                                {"stride", program.particleBytes},
                                {"grid", shader.grid},
                                {"hasBackground", shader.hasBackground},
                                {"functions", std::move(functions)}};
    return document.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace tarnwick
