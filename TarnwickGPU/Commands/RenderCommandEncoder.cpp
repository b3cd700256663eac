#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/ColorInputs.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/PointDrawing.h"
#include "TarnwickGPU/Commands/Rendering.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

void requireFirstInstance(std::uint32_t baseInstance) {
    precondition(baseInstance == 0, "points have the base instance 0", "base instance",
                 baseInstance);
}

// In the order of the enumeration.
constexpr std::array compareOps{VK_COMPARE_OP_NEVER,
                                VK_COMPARE_OP_LESS,
                                VK_COMPARE_OP_EQUAL,
                                VK_COMPARE_OP_LESS_OR_EQUAL,
                                VK_COMPARE_OP_GREATER,
                                VK_COMPARE_OP_NOT_EQUAL,
                                VK_COMPARE_OP_GREATER_OR_EQUAL,
                                VK_COMPARE_OP_ALWAYS};

Contents contentsAfter(LoadAction load) {
    return load == LoadAction::load ? Contents::kept : Contents::discarded;
}

void enter(CommandBufferParts& parts, const Texture* texture, const TextureUse& use,
           Contents contents) {
    if (texture)
        parts.enter(texture->parts(), use, contents);
}

void leave(CommandBufferParts& parts, const Texture* texture, const TextureUse& use) {
    if (texture)
        parts.barriers.leave(texture->parts(), use);
}

void setDepth(CommandStream& stream, const DepthStencilDescriptor& descriptor) {
    const bool tests = descriptor.depthWrites || descriptor.depthCompare != CompareFunction::always;
    stream.add(command::SetDepth{tests, descriptor.depthWrites,
                                 compareOps[static_cast<std::size_t>(descriptor.depthCompare)]});
}

bool fits(const RenderPipelineParts& pipeline, const RenderPassDescriptor& pass) {
    auto format = [](const Texture* texture) {
        return texture ? texture->descriptor().format : PixelFormat::invalid;
    };
    for (std::size_t n = 0; n < mostColors; ++n)
        if (pipeline.colorFormats[n] != format(pass.colorAt(n).texture))
            return false;
    return pipeline.depthFormat == format(pass.depth.texture) &&
           pipeline.sampleCount == targetDescriptor(pass).sampleCount;
}

bool fits(TopologyClass topology, PrimitiveType type) {
    return (topology == TopologyClass::point) == (type == PrimitiveType::point);
}

// The pipeline of a draw of such primitives.
const RenderPipelineParts& pipelineOfDraw(const CommandBufferParts& parts, PrimitiveType type) {
    precondition(parts.encoding == Encoding::render, "a draw is in an open render encoder",
                 "open encoder", nameOf(parts.encoding));
    precondition(parts.renderPipeline, "a draw follows setRenderPipelineState()");
    precondition(!parts.renderPipeline->hasPatches, "patches are drawn by drawPatches()");
    precondition(fits(parts.renderPipeline->topology, type),
                 "points are drawn with a pipeline of points, triangles with one of triangles");
    return *parts.renderPipeline;
}

void startDraw(CommandBufferParts& parts, const BindingLayout& layout, PrimitiveType type) {
    if (layout.colorInputs != 0)
        readyColorInputs(parts, layout.colorInputs);
    openRendering(parts);
    readyDraw(parts, layout, type);
}

} // namespace

std::optional<RenderCommandEncoder>
CommandBuffer::renderCommandEncoder(const RenderPassDescriptor& descriptor) {
    if (parts_->device->submissions.isLost() || parts_->failed)
        return std::nullopt;
    parts_->startEncoding(Encoding::render);
    parts_->pass = descriptor;
    for (std::size_t n = 0; n < mostColors; ++n) {
        const ColorAttachment& color = descriptor.colorAt(n);
        enter(*parts_, color.texture, colorUse, contentsAfter(color.load));
        if (color.store == StoreAction::multisampleResolve)
            enter(*parts_, color.resolveTexture, colorUse, Contents::discarded);
    }
    enter(*parts_, descriptor.depth.texture, depthUse, contentsAfter(descriptor.depth.load));
    parts_->barriers.flush(*parts_->stream);

    RenderCommandEncoder encoder(*parts_);
    const VkExtent2D target = targetExtent(descriptor);
    encoder.setViewport(
        {.width = static_cast<double>(target.width), .height = static_cast<double>(target.height)});
    encoder.setScissorRect({.width = target.width, .height = target.height});
    encoder.setBlendColor(0, 0, 0, 0);
    setDepth(*parts_->stream, {});
    return encoder;
}

void RenderCommandEncoder::setRenderPipelineState(const RenderPipelineState& state) {
    const RenderPipelineParts& pipeline = state.parts();
    const TextureDescriptor& target = targetDescriptor(parts_->pass);
    precondition(fits(pipeline, parts_->pass),
                 "a pipeline has the formats and the sample count of the targets",
                 "pipeline VkFormat", static_cast<int>(vulkanFormat(pipeline.colorFormats[0])),
                 "target VkFormat", static_cast<int>(vulkanFormat(target.format)),
                 "pipeline samples", pipeline.sampleCount, "target samples", target.sampleCount);
    parts_->renderPipeline = &pipeline;
    bindPipeline(*parts_, pipeline.drawing.pipeline);
}

void RenderCommandEncoder::setDepthStencilState(const DepthStencilState& state) {
    setDepth(*parts_->stream, state.descriptor());
}

void RenderCommandEncoder::setViewport(const Viewport& viewport) {
    parts_->viewport = viewport;
    encodeViewport(*parts_, viewport);
}

void RenderCommandEncoder::setScissorRect(const ScissorRect& rectangle) {
    parts_->scissor = rectangle;
    const VkRect2D scissor{
        {static_cast<std::int32_t>(rectangle.x), static_cast<std::int32_t>(rectangle.y)},
        {rectangle.width, rectangle.height}};
    parts_->stream->add(command::SetScissor{scissor});
}

void RenderCommandEncoder::setBlendColor(float red, float green, float blue, float alpha) {
    parts_->stream->add(command::SetBlendColor{{red, green, blue, alpha}});
}

void RenderCommandEncoder::setVertexBytes(const void* bytes, std::size_t length,
                                          std::uint32_t index) {
    parts_->setBytes(TableIndex::vertexOrKernel, bytes, length, index);
}

void RenderCommandEncoder::setVertexBuffer(const Buffer& buffer, std::size_t offset,
                                           std::uint32_t index) {
    parts_->setBuffer(TableIndex::vertexOrKernel, buffer, offset, index);
}

void RenderCommandEncoder::setVertexTexture(const Texture* texture, std::uint32_t index) {
    parts_->setTexture(TableIndex::vertexOrKernel, texture, index);
}

void RenderCommandEncoder::setVertexSamplerState(const SamplerState* state, std::uint32_t index) {
    parts_->setSampler(TableIndex::vertexOrKernel, state, index);
}

void RenderCommandEncoder::setFragmentBytes(const void* bytes, std::size_t length,
                                            std::uint32_t index) {
    parts_->setBytes(TableIndex::fragment, bytes, length, index);
}

void RenderCommandEncoder::setFragmentBuffer(const Buffer& buffer, std::size_t offset,
                                             std::uint32_t index) {
    parts_->setBuffer(TableIndex::fragment, buffer, offset, index);
}

void RenderCommandEncoder::setFragmentTexture(const Texture* texture, std::uint32_t index) {
    parts_->setTexture(TableIndex::fragment, texture, index);
}

void RenderCommandEncoder::setFragmentSamplerState(const SamplerState* state, std::uint32_t index) {
    parts_->setSampler(TableIndex::fragment, state, index);
}

void RenderCommandEncoder::drawPrimitives(PrimitiveType type, std::uint32_t vertexStart,
                                          std::uint32_t vertexCount, std::uint32_t instanceCount,
                                          std::uint32_t baseInstance) {
    const RenderPipelineParts& pipeline = pipelineOfDraw(*parts_, type);
    if (vertexCount == 0 || instanceCount == 0)
        return;
    if (pipeline.points.way != PointWay::asGiven) {
        requireFirstInstance(baseInstance);
        return drawPoints(*parts_, vertexStart, vertexCount, instanceCount);
    }
    startDraw(*parts_, pipeline.drawing.layout, type);
    parts_->stream->add(command::Draw{parts_->stream->traitsIndex(pipeline.traits), vertexCount,
                                      instanceCount, vertexStart, baseInstance});
}

void RenderCommandEncoder::drawIndexedPrimitives(PrimitiveType type, std::uint32_t indexCount,
                                                 IndexType indexType, const Buffer& indexBuffer,
                                                 std::size_t indexBufferOffset,
                                                 std::uint32_t instanceCount,
                                                 std::int32_t baseVertex,
                                                 std::uint32_t baseInstance) {
    const RenderPipelineParts& pipeline = pipelineOfDraw(*parts_, type);
    if (indexCount == 0 || instanceCount == 0)
        return;
    if (pipeline.points.way != PointWay::asGiven) {
        requireFirstInstance(baseInstance);
        return drawIndexedPoints(*parts_, indexCount, indexType, indexBuffer, indexBufferOffset,
                                 instanceCount, baseVertex);
    }
    startDraw(*parts_, pipeline.drawing.layout, type);
    bindIndices(*parts_, indexBuffer, indexBufferOffset, indexType, indexCount);
    parts_->stream->add(command::DrawIndexed{parts_->stream->traitsIndex(pipeline.traits),
                                             indexCount, instanceCount, 0, baseVertex,
                                             baseInstance});
}

void RenderCommandEncoder::endEncoding() {
    openRendering(*parts_); // a pass without draws still clears its targets
    parts_->endEncoding(Encoding::render);
    parts_->stream->add(command::EndRendering{});
    const RenderPassDescriptor& pass = parts_->pass;
    for (std::size_t n = 0; n < mostColors; ++n) {
        const ColorAttachment& color = pass.colorAt(n);
        leave(*parts_, color.texture, colorUseOf(*parts_, n));
        if (color.store == StoreAction::multisampleResolve)
            leave(*parts_, color.resolveTexture, colorUse);
    }
    leave(*parts_, pass.depth.texture, depthUse);
    parts_->barriers.afterWork(VK_PIPELINE_STAGE_2_ALL_GRAPHICS_BIT,
                               VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT);
}

} // namespace tarnwick::gpu
