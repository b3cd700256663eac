#include "TarnwickGPU/Commands/Rendering.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/ResourceBinding.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/BufferParts.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick::gpu {

namespace {

// In the order of the enumerations.
constexpr std::array loadOps{VK_ATTACHMENT_LOAD_OP_DONT_CARE, VK_ATTACHMENT_LOAD_OP_LOAD,
                             VK_ATTACHMENT_LOAD_OP_CLEAR};
constexpr std::array storeOps{VK_ATTACHMENT_STORE_OP_DONT_CARE, VK_ATTACHMENT_STORE_OP_STORE,
                              VK_ATTACHMENT_STORE_OP_DONT_CARE};

constexpr std::array topologies{VK_PRIMITIVE_TOPOLOGY_POINT_LIST,
                                VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST,
                                VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP};

VkClearColorValue clearValue(const ClearColor& color, PixelFormat format) {
    if (componentOf(format) == msl::TextureComponent::uint_)
        return {.uint32 = {static_cast<std::uint32_t>(color.red),
                           static_cast<std::uint32_t>(color.green),
                           static_cast<std::uint32_t>(color.blue),
                           static_cast<std::uint32_t>(color.alpha)}};
    if (componentOf(format) == msl::TextureComponent::int_)
        return {.int32 = {
                    static_cast<std::int32_t>(color.red), static_cast<std::int32_t>(color.green),
                    static_cast<std::int32_t>(color.blue), static_cast<std::int32_t>(color.alpha)}};
    return {.float32 = {static_cast<float>(color.red), static_cast<float>(color.green),
                        static_cast<float>(color.blue), static_cast<float>(color.alpha)}};
}

VkRenderingAttachmentInfo colorInfo(const ColorAttachment& color, VkImageLayout layout) {
    if (!color.texture)
        return {.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO};
    VkRenderingAttachmentInfo info{
        .sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
        .imageView = color.texture->parts().views.attachment(color.level, color.slice),
        .imageLayout = layout,
        .loadOp = loadOps[static_cast<std::size_t>(color.load)],
        .storeOp = storeOps[static_cast<std::size_t>(color.store)],
        .clearValue = {.color = clearValue(color.clear, color.texture->descriptor().format)}};
    if (color.store == StoreAction::multisampleResolve) {
        precondition(color.resolveTexture, "multisampleResolve has a texture to resolve to");
        const bool isReal =
            componentOf(color.texture->descriptor().format) == msl::TextureComponent::float_;
        info.resolveMode = isReal ? VK_RESOLVE_MODE_AVERAGE_BIT : VK_RESOLVE_MODE_SAMPLE_ZERO_BIT;
        info.resolveImageView = color.resolveTexture->parts().views.attachment();
        info.resolveImageLayout = colorUse.layout;
    }
    return info;
}

VkRenderingAttachmentInfo depthInfo(const DepthAttachment& depth) {
    return {.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
            .imageView = depth.texture->parts().views.attachment(depth.level, depth.slice),
            .imageLayout = depthUse.layout,
            .loadOp = loadOps[static_cast<std::size_t>(depth.load)],
            .storeOp = storeOps[static_cast<std::size_t>(depth.store)],
            .clearValue = {.depthStencil = {static_cast<float>(depth.clearDepth), 0}}};
}

// A later draw may interrupt the rendering, so the contents are always kept.
VkRenderingAttachmentInfo keptBetween(VkRenderingAttachmentInfo info, bool goesOn) {
    info.storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    if (goesOn)
        info.loadOp = VK_ATTACHMENT_LOAD_OP_LOAD;
    return info;
}

// A buffer that is not bound reads as zero.
void bindVertexBuffers(CommandBufferParts& parts) {
    const std::vector<std::uint32_t>& indices = parts.renderPipeline->vertexBuffers;
    if (indices.empty())
        return;
    const ResourceTable& table = parts.tables[static_cast<std::size_t>(TableIndex::vertexOrKernel)];
    std::vector<VertexBuffer>& buffers = parts.stream->vertexBuffers;
    parts.stream->add(command::BindVertexBuffers{static_cast<std::uint32_t>(buffers.size()),
                                                 static_cast<std::uint32_t>(indices.size())});
    for (std::uint32_t index : indices) {
        const BoundBuffer& bound = table.buffers[index];
        buffers.push_back({bound.buffer ? bound.buffer : parts.device->standIns.zeros.buffer,
                           bound.offset, bound.buffer ? bound.size : standInBytes});
    }
}

} // namespace

const TextureDescriptor& targetDescriptor(const RenderPassDescriptor& pass) {
    const Texture* texture = pass.depth.texture;
    for (std::size_t n = mostColors; n-- > 0;)
        if (pass.colorAt(n).texture)
            texture = pass.colorAt(n).texture;
    precondition(texture, "a render pass has a target");
    return texture->descriptor();
}

TextureUse colorUseOf(const CommandBufferParts& parts, std::size_t n) {
    TextureUse use = colorUse;
    if (parts.colorInputs[n].isTarget) {
        use.layout = parts.colorInputs[n].layout;
        use.stages |= VK_PIPELINE_STAGE_2_FRAGMENT_SHADER_BIT;
        use.access |= VK_ACCESS_2_SHADER_READ_BIT;
    }
    return use;
}

VkExtent2D targetExtent(const RenderPassDescriptor& pass) {
    const TextureDescriptor& target = targetDescriptor(pass);
    std::uint32_t level = pass.depth.level;
    for (std::size_t n = mostColors; n-- > 0;)
        if (pass.colorAt(n).texture)
            level = pass.colorAt(n).level;
    return {std::max(target.width >> level, 1u), std::max(target.height >> level, 1u)};
}

void openRendering(CommandBufferParts& parts) {
    if (parts.rendering == Rendering::open)
        return;
    const bool goesOn = parts.rendering == Rendering::broken;
    parts.rendering = Rendering::open;
    const RenderPassDescriptor& pass = parts.pass;
    RenderingRecord rendering{.hasDepth = pass.depth.texture != nullptr,
                              .extent = targetExtent(pass),
                              .scissorsExactly = targetDescriptor(pass).sampleCount == 1 ||
                                                 !parts.device->record.info.isCPU};
    for (std::uint32_t n = 0; n < mostColors; ++n) {
        rendering.colors[n] =
            keptBetween(colorInfo(pass.colorAt(n), colorUseOf(parts, n).layout), goesOn);
        if (pass.colorAt(n).texture)
            rendering.colorCount = n + 1;
    }
    if (rendering.hasDepth)
        rendering.depth = keptBetween(depthInfo(pass.depth), goesOn);
    parts.stream->beginRendering(rendering);
}

void breakRendering(CommandBufferParts& parts) {
    if (parts.rendering == Rendering::open) {
        parts.stream->add(command::EndRendering{});
        parts.rendering = Rendering::broken;
    }
    waitForAll(parts);
}

void waitForAll(CommandBufferParts& parts) {
    parts.barriers.afterWork(VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT, VK_ACCESS_2_MEMORY_WRITE_BIT);
    parts.barriers.flush(*parts.stream);
}

void encodeViewport(CommandBufferParts& parts, const Viewport& viewport) {
    // Vulkan's clip space has y down; a negative height turns it (Vulkan 1.3, 27.9).
    const VkViewport turned{static_cast<float>(viewport.originX),
                            static_cast<float>(viewport.originY + viewport.height),
                            static_cast<float>(viewport.width),
                            static_cast<float>(-viewport.height),
                            static_cast<float>(viewport.znear),
                            static_cast<float>(viewport.zfar)};
    parts.stream->add(command::SetViewport{turned});
}

void bindPipeline(CommandBufferParts& parts, VkPipeline pipeline) {
    if (parts.boundPipeline == pipeline)
        return;
    parts.stream->add(command::BindPipeline{VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline});
    parts.boundPipeline = pipeline;
    parts.resourcesChanged = true; // its layout may differ
}

void readyDraw(CommandBufferParts& parts, const BindingLayout& layout, PrimitiveType type) {
    readyDraw(parts, layout, topologies[static_cast<std::size_t>(type)]);
}

void readyDraw(CommandBufferParts& parts, const BindingLayout& layout,
               VkPrimitiveTopology topology) {
    if (parts.topology != topology) {
        parts.stream->add(
            command::SetTopology{topology, topology == VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP});
        parts.topology = topology;
    }
    const bool haveChanged = std::exchange(parts.resourcesChanged, false);
    if (haveChanged)
        bindVertexBuffers(parts);
    if (haveChanged || layout.reportsLoops)
        bindResources(parts, layout, VK_PIPELINE_BIND_POINT_GRAPHICS);
}

void bindIndices(CommandBufferParts& parts, const Buffer& buffer, std::size_t offset,
                 IndexType type, std::uint32_t count) {
    const bool isShort = type == IndexType::uint16;
    const std::size_t bytes = isShort ? 2 : 4;
    precondition(offset % bytes == 0, "the offset of indices is a multiple of their size", "offset",
                 offset, "bytes of an index", bytes);
    precondition(offset <= buffer.length() && (buffer.length() - offset) / bytes >= count,
                 "the indices are within their buffer", "offset", offset, "indices", count,
                 "bytes of the buffer", buffer.length());
    parts.stream->add(command::BindIndices{buffer.parts().memory.buffer, offset,
                                           isShort ? VK_INDEX_TYPE_UINT16 : VK_INDEX_TYPE_UINT32});
}

} // namespace tarnwick::gpu
