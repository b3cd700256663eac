#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands/PipelineErrors.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/StageInterface.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Device/GraphicsPipeline.h"
#include "TarnwickGPU/Inputs/AttributeFaults.h"
#include "TarnwickGPU/Inputs/VertexInput.h"
#include "TarnwickGPU/Points/PointForms.h"

#include <array>

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
    for (const Function* function : {descriptor.vertex, descriptor.fragment})
        checkNeeds(state_->record, subject(descriptor), function->entryPoint());
    // The forms of points number the vertices in their own way.
    const bool drawsPoints = descriptor.topology == TopologyClass::point &&
                             descriptor.vertex->entryPoint().attributes.empty() &&
                             takesPointForms(descriptor.vertex->entryPoint()) &&
                             !takesColors(descriptor.fragment->entryPoint());
    const VkResult result =
        drawsPoints ? makePointPipelines(*state_, descriptor, parts->drawing, parts->points)
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
