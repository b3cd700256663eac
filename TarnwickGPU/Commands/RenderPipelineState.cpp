#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands/PipelineErrors.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/ResourceTable.h"
#include "TarnwickGPU/Commands/StageInterface.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Device/GraphicsPipeline.h"
#include "TarnwickGPU/Inputs/AttributeFaults.h"
#include "TarnwickGPU/Inputs/AttributeFetch.h"
#include "TarnwickGPU/Inputs/PatchStages.h"
#include "TarnwickGPU/Inputs/VertexInput.h"
#include "TarnwickGPU/Points/PointForms.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tarnwick::gpu {

namespace {

std::string subject(const RenderPipelineDescriptor& descriptor) {
    return "the render pipeline of " + descriptor.vertex->name() + " and " +
           descriptor.fragment->name();
}

VkResult makePipeline(RenderPipelineParts& parts, const RenderPipelineDescriptor& descriptor) {
    const std::array functions{&descriptor.vertex->entryPoint(),
                               &descriptor.fragment->entryPoint()};
    auto layout = BindingLayout::make(*parts.device, {.functions = functions});
    if (!layout)
        return VK_ERROR_UNKNOWN;
    parts.drawing.layout = std::move(*layout);
    const VertexInput vertexInput(*functions[0], descriptor.vertexDescriptor);
    parts.vertexBuffers = vertexInput.buffers();
    return makeGraphicsPipeline(*parts.device,
                                {.vertex = functions[0]->words,
                                 .fragment = functions[1]->words,
                                 .layout = parts.drawing.layout.pipelineLayout,
                                 .vertexInput = &vertexInput.state(),
                                 .colors = colorsOf(descriptor),
                                 .givenColors = functions[1]->colorAttachments,
                                 .readsColors = parts.drawing.layout.colorInputs != 0,
                                 .depthFormat = descriptor.depthFormat,
                                 .sampleCount = descriptor.sampleCount,
                                 .topology = descriptor.topology},
                                parts.drawing.pipeline);
}

// Why the device does not draw patches so, as a clause; nothing if it does.
std::optional<std::string> patchFault(const DeviceRecord& device,
                                      const RenderPipelineDescriptor& descriptor) {
    if (descriptor.vertex->entryPoint().patch == msl::PatchKind::none)
        return std::nullopt;
    const std::uint32_t factor = descriptor.tessellation.maxFactor;
    const std::uint32_t most = std::min(device.limits.maxTessellationGenerationLevel, 64u);
    if (factor < 1 || factor > most)
        return "the maximum of its factors is " + std::to_string(factor) + ", and " +
               device.info.name + " takes 1 to " + std::to_string(most);
    if (descriptor.tessellation.partitionMode == TessellationPartitionMode::pow2 &&
        !std::has_single_bit(factor))
        return "the maximum of its factors is " + std::to_string(factor) +
               ", which is not a power of two";
    if (descriptor.topology == TopologyClass::point)
        return "patches are not drawn as points";
    return std::nullopt;
}

// A patch function with the factors of the control stage, and with its attributes.
std::shared_ptr<const msl::EntryPoint> patchFunction(const RenderPipelineDescriptor& descriptor,
                                                     std::uint32_t binding) {
    const std::optional<IndexType>& indices = descriptor.tessellation.controlPointIndices;
    msl::EntryPoint function = descriptor.vertex->entryPoint();
    function.resources.push_back(
        {.kind = msl::ResourceKind::storageBuffer, .index = factorBuffer, .binding = binding});
    static constexpr VertexDescriptor none;
    FetchNeeds needs{.buffers = descriptor.vertexDescriptor ? *descriptor.vertexDescriptor : none,
                     .indices = std::nullopt,
                     .binding = binding + 1};
    if (indices)
        needs.indices = {.type = *indices, .buffer = controlPointIndexBuffer};
    return withFetches(function, needs);
}

VkResult makePatchPipeline(RenderPipelineParts& parts, const RenderPipelineDescriptor& descriptor) {
    const msl::EntryPoint& fragment = descriptor.fragment->entryPoint();
    const std::array given{&descriptor.vertex->entryPoint(), &fragment};
    const std::uint32_t binding = ownBinding(given);
    const auto evaluation = patchFunction(descriptor, binding);
    const std::array functions{evaluation.get(), &fragment};
    auto layout = BindingLayout::make(
        *parts.device, {.functions = functions,
                        .pushConstants = {.stageFlags = VK_SHADER_STAGE_TESSELLATION_CONTROL_BIT,
                                          .size = sizeof(PatchRecord)}});
    if (!layout)
        return VK_ERROR_UNKNOWN;
    parts.drawing.layout = std::move(*layout);
    parts.hasPatches = true;
    parts.hasControlPointIndices = descriptor.tessellation.controlPointIndices.has_value();
    const spirv::Words vertex = patchVertexStage();
    const spirv::Words control = patchControlStage({.kind = evaluation->patch,
                                                    .tessellation = descriptor.tessellation,
                                                    .factorsBinding = binding});
    return makeGraphicsPipeline(*parts.device,
                                {.vertex = vertex,
                                 .fragment = fragment.words,
                                 .control = control,
                                 .evaluation = evaluation->words,
                                 .layout = parts.drawing.layout.pipelineLayout,
                                 .colors = colorsOf(descriptor),
                                 .givenColors = fragment.colorAttachments,
                                 .readsColors = parts.drawing.layout.colorInputs != 0,
                                 .depthFormat = descriptor.depthFormat,
                                 .sampleCount = descriptor.sampleCount},
                                parts.drawing.pipeline);
}

} // namespace

RenderPipelineParts::~RenderPipelineParts() {
    drawing.bury(device->graveyard);
    points.bury(device->graveyard);
}

RenderPipelineState::RenderPipelineState(std::unique_ptr<RenderPipelineParts> parts)
    : parts_(std::move(parts)) {}
RenderPipelineState::~RenderPipelineState() = default;

std::unique_ptr<RenderPipelineState>
Device::newRenderPipelineState(const RenderPipelineDescriptor& given) {
    precondition(given.vertex && given.fragment, "a render pipeline has two functions",
                 "has a vertex function", given.vertex != nullptr, "has a fragment function",
                 given.fragment != nullptr);
    if (isLost())
        throw DeviceError(refusal(state_->record, subject(given), VK_ERROR_DEVICE_LOST));
    if (const auto fault = interfaceFault(state_->record, given))
        throw DeviceError("The device could not make " + subject(given) + ": " + *fault + ".");
    checkNeeds(state_->record, subject(given), given.vertex->entryPoint());
    if (const auto fault = patchFault(state_->record, given))
        throw DeviceError("The device could not make " + subject(given) + ": " + *fault + ".");
    if (const auto fault =
            attributeFault(state_->record, given.vertex->entryPoint(), given.vertexDescriptor))
        throw DeviceError("The device could not make " + subject(given) + ": " + *fault + ".");
    const Function vertex = withoutLostOutputs(*given.vertex, given);
    const Function fragment = withoutLostOutputs(*given.fragment, given);
    RenderPipelineDescriptor descriptor = given;
    descriptor.vertex = &vertex;
    descriptor.fragment = &fragment;
    auto parts = std::make_unique<RenderPipelineParts>();
    parts->device = state_;
    for (std::size_t n = 0; n < mostColors; ++n)
        parts->colorFormats[n] = descriptor.colorAt(n).format;
    parts->depthFormat = descriptor.depthFormat;
    parts->sampleCount = descriptor.sampleCount;
    parts->topology = descriptor.topology;
    for (const Function* function : {descriptor.vertex, descriptor.fragment}) {
        checkNeeds(state_->record, subject(descriptor), function->entryPoint());
        heed(*parts->traits, function->entryPoint());
    }
    const bool drawsPoints = descriptor.topology == TopologyClass::point &&
                             takesPointForms(descriptor.vertex->entryPoint()) &&
                             !takesColors(descriptor.fragment->entryPoint());
    const bool drawsPatches = descriptor.vertex->entryPoint().patch != msl::PatchKind::none;
    const VkResult result =
        drawsPatches  ? makePatchPipeline(*parts, descriptor)
        : drawsPoints ? makePointPipelines(*state_, descriptor, parts->drawing, parts->points)
                      : makePipeline(*parts, descriptor);
    if (result != VK_SUCCESS)
        throw DeviceError(refusal(state_->record, subject(descriptor), result));
    return std::make_unique<RenderPipelineState>(std::move(parts));
}

std::unique_ptr<DepthStencilState>
Device::newDepthStencilState(const DepthStencilDescriptor& descriptor) {
    return std::make_unique<DepthStencilState>(descriptor);
}

} // namespace tarnwick::gpu
