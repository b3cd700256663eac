#include "TarnwickGPU/Points/PointPipelines.h"

#include "TarnwickGPU/Device/GraphicsPipeline.h"
#include "TarnwickGPU/Points/PointForms.h"
#include "TarnwickGPU/Points/PointKernel.h"
#include "TarnwickGPU/Vulkan/ShaderModule.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

using Functions = std::array<const msl::EntryPoint*, 2>; // vertex, fragment

constexpr VkPushConstantRange recordFor(VkShaderStageFlags stages) {
    return {.stageFlags = stages, .size = sizeof(PointRecord)};
}

bool stores(const msl::EntryPoint& function) {
    const auto isStored = [](const msl::Resource& resource) {
        return resource.isWritten && resource.kind != msl::ResourceKind::loopReport;
    };
    return function.storesByAddress ||
           std::any_of(function.resources.begin(), function.resources.end(), isStored);
}

// A factor that the layer's kernels compute.
bool isPlain(BlendFactor factor) {
    return factor == BlendFactor::zero || factor == BlendFactor::one ||
           factor == BlendFactor::sourceAlpha || factor == BlendFactor::oneMinusSourceAlpha;
}

// Whether the picture does not depend on the order of the points.
bool isSum(const RenderPipelineDescriptor& descriptor) {
    const ColorAttachmentDescriptor& color = descriptor.color;
    const bool hasOthers = std::ranges::any_of(descriptor.otherColors, [](const auto& other) {
        return other.format != PixelFormat::invalid;
    });
    return !hasOthers && color.writeMask == ColorWriteMask{} && isPlain(color.sourceRGB) &&
           isPlain(color.sourceAlpha) && color.rgbOperation == BlendOperation::add &&
           color.alphaOperation == BlendOperation::add && color.blends &&
           color.destinationRGB == BlendFactor::one && color.destinationAlpha == BlendFactor::one &&
           descriptor.depthFormat == PixelFormat::invalid && descriptor.sampleCount == 1;
}

// Without the modules.
GraphicsPipelineNeeds needsOf(const RenderPipelineDescriptor& descriptor, VkPipelineLayout layout,
                              const PointPair& pair, PointForm form) {
    return {.layout = layout,
            .colors = colorsOf(descriptor),
            .givenColors = pair.fragment.colorAttachments,
            .depthFormat = descriptor.depthFormat,
            .sampleCount = descriptor.sampleCount,
            .topology = form == PointForm::points ? TopologyClass::point : TopologyClass::triangle};
}

VkResult makeForm(const DeviceState& device, GraphicsPipelineNeeds needs, const PointPair& pair,
                  PointForm form, VkPipeline& pipeline) {
    const Words vertex = vertexForm(pair, form), fragment = fragmentForm(pair, form);
    needs.vertex = vertex;
    needs.fragment = fragment;
    return makeGraphicsPipeline(device, needs, pipeline);
}

// If the device's limits do not let the vertex stage see the fragment function's resources too, the
// pair passes no constants.
std::optional<BindingLayout> layoutOf(DeviceState& device, const Functions& functions,
                                      PointPair& pair) {
    BindingNeeds needs{.functions = functions,
                       .pushConstants = recordFor(VK_SHADER_STAGE_VERTEX_BIT)};
    if (pair.passesConstants) {
        needs.stages = VK_SHADER_STAGE_VERTEX_BIT | VK_SHADER_STAGE_FRAGMENT_BIT;
        if (auto layout = BindingLayout::make(device, needs))
            return layout;
        needs.stages = 0;
        pair.passesConstants = false;
    }
    return BindingLayout::make(device, needs);
}

VkResult makeKernel(const DeviceState& device, const Words& words, PipelineWithLayout& kernel) {
    const DeviceRecord& record = device.record;
    const ShaderModule module(record.handle, words);
    if (!module.handle())
        return VK_ERROR_UNKNOWN;
    const VkSpecializationMapEntry entry{.constantID = msl::loopBudgetConstant,
                                         .size = sizeof record.loopBudget};
    const VkSpecializationInfo constants{1, &entry, sizeof record.loopBudget, &record.loopBudget};
    const VkComputePipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_COMPUTE_PIPELINE_CREATE_INFO,
        .flags = VK_PIPELINE_CREATE_DISPATCH_BASE_BIT,
        .stage = {.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
                  .stage = VK_SHADER_STAGE_COMPUTE_BIT,
                  .module = module.handle(),
                  .pName = "main",
                  .pSpecializationInfo = &constants},
        .layout = kernel.layout.pipelineLayout};
    return vkCreateComputePipelines(record.handle, device.pipelineCache.handle(), 1, &info, nullptr,
                                    &kernel.pipeline);
}

SumForm sumForm(const DeviceState& device) {
    return device.record.features.wideSums ? SumForm::integers : SumForm::words;
}

// Leaves `kernel` empty if the functions have instructions that kernels do not support.
VkResult makeKernel(DeviceState& device, const RenderPipelineDescriptor& descriptor,
                    const Functions& functions, bool splats, PipelineWithLayout& kernel) {
    const std::span<const msl::EntryPoint* const> bound(functions.data(), splats ? 2 : 1);
    const std::uint32_t binding = ownBinding(bound);
    const auto words = pointKernel({.vertex = functions[0],
                                    .fragment = splats ? functions[1] : nullptr,
                                    .color = descriptor.color,
                                    .drawsBinding = binding,
                                    .sumsBinding = binding + 1,
                                    .sumForm = sumForm(device)});
    if (!words)
        return VK_SUCCESS;
    auto layout =
        BindingLayout::make(device, {.functions = bound,
                                     .pushConstants = recordFor(VK_SHADER_STAGE_COMPUTE_BIT),
                                     .ownBuffers = splats ? 2u : 1u,
                                     .stages = VK_SHADER_STAGE_COMPUTE_BIT});
    if (!layout)
        return VK_SUCCESS;
    kernel.layout = std::move(*layout);
    return makeKernel(device, *words, kernel);
}

VkResult makeSums(DeviceState& device, const RenderPipelineDescriptor& descriptor,
                  PointPipelines& points) {
    auto layout =
        BindingLayout::make(device, {.pushConstants = recordFor(VK_SHADER_STAGE_FRAGMENT_BIT),
                                     .ownBuffers = 1,
                                     .stages = VK_SHADER_STAGE_FRAGMENT_BIT});
    if (!layout)
        return VK_ERROR_UNKNOWN;
    points.sums.layout = std::move(*layout);
    for (BoundResource& resource : points.sums.layout.resources)
        resource.own = sumsBuffer;
    ColorAttachmentDescriptor adds = descriptor.color;
    adds.sourceRGB = adds.sourceAlpha = BlendFactor::one;
    const Words vertex = sumsVertex(), fragment = sumsFragment(sumForm(device));
    return makeGraphicsPipeline(device,
                                {.vertex = vertex,
                                 .fragment = fragment,
                                 .layout = points.sums.layout.pipelineLayout,
                                 .colors = {adds}},
                                points.sums.pipeline);
}

// Sums are precise enough only for a target of halves.
bool canSplat(const DeviceRecord& device, const RenderPipelineDescriptor& descriptor) {
    return device.points.splats && descriptor.color.format == PixelFormat::rgba16Float &&
           !stores(descriptor.fragment->entryPoint());
}

// Makes the kernels and chooses the way `sorted` if the points add up and kernels can draw them.
VkResult makeSorting(DeviceState& device, const RenderPipelineDescriptor& descriptor,
                     const Functions& functions, PointPipelines& points) {
    if (descriptor.sampleCount > 1 || !isSum(descriptor) || stores(*functions[0]))
        return VK_SUCCESS;
    VkResult result = makeKernel(device, descriptor, functions, false, points.sorting);
    if (result == VK_SUCCESS && points.sorting.pipeline && canSplat(device.record, descriptor))
        result = makeKernel(device, descriptor, functions, true, points.splatting);
    if (result == VK_SUCCESS && points.splatting.pipeline)
        result = makeSums(device, descriptor, points);
    if (points.sorting.pipeline)
        points.way = PointWay::sorted;
    return result;
}

} // namespace

void PointPipelines::bury(Graveyard& graveyard) {
    graveyard.bury(quads);
    indexed.bury(graveyard);
    for (PipelineWithLayout* made : {&sorting, &splatting, &sums})
        made->bury(graveyard);
}

VkResult makePointPipelines(DeviceState& device, const RenderPipelineDescriptor& descriptor,
                            PipelineWithLayout& drawing, PointPipelines& points) {
    const Functions functions{&descriptor.vertex->entryPoint(), &descriptor.fragment->entryPoint()};
    PointPair pair = pointPair(*functions[0], *functions[1]);
    pair.passesConstants = pair.passesConstants && !stores(*functions[1]);
    pair.addsUp = isSum(descriptor);
    auto layout = layoutOf(device, functions, pair);
    if (!layout)
        return VK_ERROR_UNKNOWN;
    drawing.layout = std::move(*layout);
    const PointTraits& traits = device.record.points;
    const bool suffices = traits.largest >= largestPoint && descriptor.sampleCount == 1;
    points.way = suffices ? PointWay::points : PointWay::quads;
    VkResult result = VK_SUCCESS;
    if (!suffices || traits.splats)
        result = makeSorting(device, descriptor, functions, points);
    auto needs = [&](PointForm form) {
        return needsOf(descriptor, drawing.layout.pipelineLayout, pair, form);
    };
    auto make = [&](PointForm form, VkPipeline& pipeline) {
        return makeForm(device, needs(form), pair, form, pipeline);
    };
    if (points.way == PointWay::quads)
        points.indexed.prepare(needs(PointForm::points), vertexForm(pair, PointForm::points),
                               fragmentForm(pair, PointForm::points));
    if (result == VK_SUCCESS && points.way == PointWay::sorted)
        result = make(PointForm::quads, points.quads);
    if (result == VK_SUCCESS)
        result = make(points.way == PointWay::quads ? PointForm::quads : PointForm::points,
                      drawing.pipeline);
    return result;
}

} // namespace tarnwick::gpu
