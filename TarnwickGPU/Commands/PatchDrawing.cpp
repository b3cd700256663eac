// The draws of patches of the render encoder (Commands.h).
#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/ColorInputs.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/Rendering.h"
#include "TarnwickGPU/Inputs/PatchStages.h"

namespace tarnwick::gpu {

namespace {

struct PatchDraw {
    std::uint32_t controlPoints, start, count, instances, baseInstance;
    const Buffer* indices;
    std::size_t indexOffset;
};

// The pipeline of a draw of patches.
const RenderPipelineParts& patchPipeline(const CommandBufferParts& parts) {
    precondition(parts.encoding == Encoding::render, "a draw is in an open render encoder",
                 "open encoder", nameOf(parts.encoding));
    precondition(parts.renderPipeline && parts.renderPipeline->hasPatches,
                 "patches are drawn with a pipeline of a post-tessellation vertex function");
    return *parts.renderPipeline;
}

void draw(CommandBufferParts& parts, const PatchDraw& draw) {
    if (draw.count == 0 || draw.instances == 0)
        return;
    const BindingLayout& layout = patchPipeline(parts).drawing.layout;
    if (layout.colorInputs != 0)
        readyColorInputs(parts, layout.colorInputs);
    openRendering(parts);
    readyDraw(parts, layout, VK_PRIMITIVE_TOPOLOGY_PATCH_LIST);
    const PatchRecord record{.start = draw.start,
                             .controlPoints = draw.controlPoints,
                             .baseInstance = draw.baseInstance,
                             .instanceStride = parts.factorInstanceStride,
                             .scale = parts.factorScale};
    CommandStream& stream = *parts.stream;
    stream.pushConstants(layout.pipelineLayout, VK_SHADER_STAGE_TESSELLATION_CONTROL_BIT,
                         std::as_bytes(std::span(&record, 1)));
    const std::uint32_t traits = stream.traitsIndex(parts.renderPipeline->traits);
    if (!draw.indices)
        return stream.add(
            command::Draw{traits, draw.count, draw.instances, draw.start, draw.baseInstance});
    bindIndices(parts, *draw.indices, draw.indexOffset, IndexType::uint32, draw.start + draw.count);
    stream.add(
        command::DrawIndexed{traits, draw.count, draw.instances, draw.start, 0, draw.baseInstance});
}

} // namespace

void RenderCommandEncoder::setTessellationFactorBuffer(const Buffer& buffer, std::size_t offset,
                                                       std::size_t instanceStride) {
    precondition(instanceStride % 4 == 0, "the stride of instances is a multiple of 4", "stride",
                 instanceStride);
    parts_->place(TableIndex::vertexOrKernel, buffer, offset, factorBuffer);
    parts_->factorInstanceStride = static_cast<std::uint32_t>(instanceStride);
}

void RenderCommandEncoder::setTessellationFactorScale(float scale) {
    parts_->factorScale = scale;
}

void RenderCommandEncoder::drawPatches(std::uint32_t controlPoints, std::uint32_t patchStart,
                                       std::uint32_t patchCount, const Buffer* patchIndexBuffer,
                                       std::size_t patchIndexBufferOffset,
                                       std::uint32_t instanceCount, std::uint32_t baseInstance) {
    precondition(!patchPipeline(*parts_).hasControlPointIndices,
                 "a pipeline with indices of control points draws by drawIndexedPatches()");
    draw(*parts_, {controlPoints, patchStart, patchCount, instanceCount, baseInstance,
                   patchIndexBuffer, patchIndexBufferOffset});
}

void RenderCommandEncoder::drawIndexedPatches(
    std::uint32_t controlPoints, std::uint32_t patchStart, std::uint32_t patchCount,
    const Buffer* patchIndexBuffer, std::size_t patchIndexBufferOffset,
    const Buffer& controlPointIndexBuffer, std::size_t controlPointIndexBufferOffset,
    std::uint32_t instanceCount, std::uint32_t baseInstance) {
    precondition(patchPipeline(*parts_).hasControlPointIndices,
                 "drawIndexedPatches() requires a pipeline with a type of control point indices");
    parts_->place(TableIndex::vertexOrKernel, controlPointIndexBuffer,
                  controlPointIndexBufferOffset, gpu::controlPointIndexBuffer);
    draw(*parts_, {controlPoints, patchStart, patchCount, instanceCount, baseInstance,
                   patchIndexBuffer, patchIndexBufferOffset});
}

} // namespace tarnwick::gpu
