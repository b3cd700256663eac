#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/CommandBufferParts.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/PipelineParts.h"

#include <array>
#include <utility>

namespace tarnwick::gpu {

namespace {

// In the enumerations' orders.
constexpr std::array loadOps{VK_ATTACHMENT_LOAD_OP_DONT_CARE, VK_ATTACHMENT_LOAD_OP_LOAD,
                             VK_ATTACHMENT_LOAD_OP_CLEAR};
constexpr std::array storeOps{VK_ATTACHMENT_STORE_OP_DONT_CARE, VK_ATTACHMENT_STORE_OP_STORE,
                              VK_ATTACHMENT_STORE_OP_DONT_CARE};
constexpr std::array topologies{VK_PRIMITIVE_TOPOLOGY_POINT_LIST,
                                VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST,
                                VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP};
constexpr std::array compareOps{VK_COMPARE_OP_NEVER,
                                VK_COMPARE_OP_LESS,
                                VK_COMPARE_OP_EQUAL,
                                VK_COMPARE_OP_LESS_OR_EQUAL,
                                VK_COMPARE_OP_GREATER,
                                VK_COMPARE_OP_NOT_EQUAL,
                                VK_COMPARE_OP_GREATER_OR_EQUAL,
                                VK_COMPARE_OP_ALWAYS};

constexpr TextureUse colorUse{
    VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL, VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
    VK_ACCESS_2_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT};
constexpr TextureUse depthUse{
    VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL,
    VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT | VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT,
    VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT | VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT};

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

VkClearColorValue clearValue(const ClearColor& color, PixelFormat format) {
    if (format == PixelFormat::r32Uint)
        return {.uint32 = {static_cast<std::uint32_t>(color.red), 0, 0, 0}};
    return {.float32 = {static_cast<float>(color.red), static_cast<float>(color.green),
                        static_cast<float>(color.blue), static_cast<float>(color.alpha)}};
}

VkRenderingAttachmentInfo colorInfo(const ColorAttachment& color) {
    VkRenderingAttachmentInfo info{
        .sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
        .imageView = color.texture->parts().asAttachment(),
        .imageLayout = colorUse.layout,
        .loadOp = loadOps[static_cast<std::size_t>(color.load)],
        .storeOp = storeOps[static_cast<std::size_t>(color.store)],
        .clearValue = {.color = clearValue(color.clear, color.texture->descriptor().format)}};
    if (color.store == StoreAction::multisampleResolve) {
        precondition(color.resolveTexture, "What is resolved has a texture to be resolved to.");
        info.resolveMode = color.texture->descriptor().format == PixelFormat::r32Uint
                               ? VK_RESOLVE_MODE_SAMPLE_ZERO_BIT
                               : VK_RESOLVE_MODE_AVERAGE_BIT;
        info.resolveImageView = color.resolveTexture->parts().asAttachment();
        info.resolveImageLayout = colorUse.layout;
    }
    return info;
}

VkRenderingAttachmentInfo depthInfo(const DepthAttachment& depth) {
    return {.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
            .imageView = depth.texture->parts().asAttachment(),
            .imageLayout = depthUse.layout,
            .loadOp = loadOps[static_cast<std::size_t>(depth.load)],
            .storeOp = storeOps[static_cast<std::size_t>(depth.store)],
            .clearValue = {.depthStencil = {static_cast<float>(depth.clearDepth), 0}}};
}

const TextureDescriptor& targetDescriptor(const RenderPassDescriptor& pass) {
    const Texture* texture = pass.color.texture ? pass.color.texture : pass.depth.texture;
    precondition(texture, "A render pass has a target.");
    return texture->descriptor();
}

void beginRendering(CommandBufferParts& parts) {
    const RenderPassDescriptor& pass = parts.pass;
    const TextureDescriptor& target = targetDescriptor(pass);
    VkRenderingAttachmentInfo color, depth;
    if (pass.color.texture)
        color = colorInfo(pass.color);
    if (pass.depth.texture)
        depth = depthInfo(pass.depth);
    const VkRenderingInfo info{.sType = VK_STRUCTURE_TYPE_RENDERING_INFO,
                               .renderArea = {.extent = {target.width, target.height}},
                               .layerCount = 1,
                               .colorAttachmentCount = pass.color.texture ? 1u : 0u,
                               .pColorAttachments = &color,
                               .pDepthAttachment = pass.depth.texture ? &depth : nullptr};
    vkCmdBeginRendering(parts.handle, &info);
}

void setDepth(VkCommandBuffer commands, const DepthStencilDescriptor& descriptor) {
    const bool tests = descriptor.depthWrites || descriptor.depthCompare != CompareFunction::always;
    vkCmdSetDepthTestEnable(commands, tests);
    vkCmdSetDepthWriteEnable(commands, descriptor.depthWrites);
    vkCmdSetDepthCompareOp(commands, compareOps[static_cast<std::size_t>(descriptor.depthCompare)]);
}

bool fits(const RenderPipelineParts& pipeline, const RenderPassDescriptor& pass) {
    auto format = [](const Texture* texture) {
        return texture ? texture->descriptor().format : PixelFormat::invalid;
    };
    return pipeline.colorFormat == format(pass.color.texture) &&
           pipeline.depthFormat == format(pass.depth.texture) &&
           pipeline.sampleCount == targetDescriptor(pass).sampleCount;
}

bool fits(TopologyClass topology, PrimitiveType type) {
    return (topology == TopologyClass::point) == (type == PrimitiveType::point);
}

} // namespace

std::optional<RenderCommandEncoder>
CommandBuffer::renderCommandEncoder(const RenderPassDescriptor& descriptor) {
    if (parts_->device->submissions.isLost() || parts_->failed)
        return std::nullopt;
    parts_->startEncoding(Encoding::render);
    parts_->pass = descriptor;
    enter(*parts_, descriptor.color.texture, colorUse, contentsAfter(descriptor.color.load));
    if (descriptor.color.store == StoreAction::multisampleResolve)
        enter(*parts_, descriptor.color.resolveTexture, colorUse, Contents::discarded);
    enter(*parts_, descriptor.depth.texture, depthUse, contentsAfter(descriptor.depth.load));
    parts_->barriers.flush(parts_->handle);
    beginRendering(*parts_);

    RenderCommandEncoder encoder(*parts_);
    const TextureDescriptor& target = targetDescriptor(descriptor);
    encoder.setViewport(
        {.width = static_cast<double>(target.width), .height = static_cast<double>(target.height)});
    encoder.setScissorRect({.width = target.width, .height = target.height});
    setDepth(parts_->handle, {});
    return encoder;
}

void RenderCommandEncoder::setRenderPipelineState(const RenderPipelineState& state) {
    const RenderPipelineParts& pipeline = state.parts();
    precondition(fits(pipeline, parts_->pass), "A pipeline has the formats of its targets.");
    parts_->renderPipeline = &pipeline;
    if (parts_->boundPipeline == pipeline.pipeline)
        return;
    vkCmdBindPipeline(parts_->handle, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline.pipeline);
    parts_->boundPipeline = pipeline.pipeline;
    parts_->resourcesChanged = true; // its layout is another
}

void RenderCommandEncoder::setDepthStencilState(const DepthStencilState& state) {
    setDepth(parts_->handle, state.descriptor());
}

void RenderCommandEncoder::setViewport(const Viewport& viewport) {
    // Vulkan's clip space has y down; a negative height turns it (Vulkan 1.3, 27.9).
    const VkViewport turned{static_cast<float>(viewport.originX),
                            static_cast<float>(viewport.originY + viewport.height),
                            static_cast<float>(viewport.width),
                            static_cast<float>(-viewport.height),
                            static_cast<float>(viewport.znear),
                            static_cast<float>(viewport.zfar)};
    vkCmdSetViewport(parts_->handle, 0, 1, &turned);
}

void RenderCommandEncoder::setScissorRect(const ScissorRect& rectangle) {
    const VkRect2D scissor{
        {static_cast<std::int32_t>(rectangle.x), static_cast<std::int32_t>(rectangle.y)},
        {rectangle.width, rectangle.height}};
    vkCmdSetScissor(parts_->handle, 0, 1, &scissor);
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

void RenderCommandEncoder::drawPrimitives(PrimitiveType type, std::uint32_t vertexStart,
                                          std::uint32_t vertexCount, std::uint32_t instanceCount) {
    precondition(parts_->encoding == Encoding::render && parts_->renderPipeline,
                 "A draw has an open encoder and a pipeline.");
    const RenderPipelineParts& pipeline = *parts_->renderPipeline;
    precondition(fits(pipeline.topology, type), "A pipeline's topology class is its primitives'.");
    if (vertexCount == 0 || instanceCount == 0)
        return;
    if (parts_->primitive != type) {
        vkCmdSetPrimitiveTopology(parts_->handle, topologies[static_cast<std::size_t>(type)]);
        parts_->primitive = type;
    }
    if (std::exchange(parts_->resourcesChanged, false) || pipeline.layout.reportsLoops)
        bindResources(*parts_, pipeline.layout, VK_PIPELINE_BIND_POINT_GRAPHICS);
    vkCmdDraw(parts_->handle, vertexCount, instanceCount, vertexStart, 0);
}

void RenderCommandEncoder::endEncoding() {
    parts_->endEncoding(Encoding::render);
    vkCmdEndRendering(parts_->handle);
    const RenderPassDescriptor& pass = parts_->pass;
    leave(*parts_, pass.color.texture, colorUse);
    if (pass.color.store == StoreAction::multisampleResolve)
        leave(*parts_, pass.color.resolveTexture, colorUse);
    leave(*parts_, pass.depth.texture, depthUse);
    parts_->barriers.afterWork(VK_PIPELINE_STAGE_2_ALL_GRAPHICS_BIT,
                               VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT);
}

} // namespace tarnwick::gpu
