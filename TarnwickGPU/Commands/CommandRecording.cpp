#include "TarnwickGPU/Commands/CommandRecording.h"

#include "TarnwickGPU/Commands/ResourceTable.h"
#include "TarnwickGPU/Device/BindingLayout.h"
#include "TarnwickGPU/Vulkan/MemoryBarrier.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

struct Writer {
    const CommandTarget& target;
    VkCommandBuffer handle = target.handle;
    const CommandStream& stream = target.stream;

    void operator()(const command::BindPipeline& one) const {
        vkCmdBindPipeline(handle, one.point, one.pipeline);
    }
    void operator()(const command::PushDescriptors& one) const {
        std::array<VkWriteDescriptorSet, mostResources> writes; // the first `count` are filled
        for (std::uint32_t n = 0; n < one.count; ++n)
            writes[n] = vulkanWrite(stream.writes[one.first + n]);
        target.device.pushDescriptorSet(handle, one.point, one.layout, 0, one.count, writes.data());
    }
    void operator()(const command::BindDescriptors& one) const {
        vkCmdBindDescriptorSets(handle, one.point, one.layout, 0, 1, &one.set, 0, nullptr);
    }
    void operator()(const command::PushConstants& one) const {
        vkCmdPushConstants(handle, one.layout, one.stages, 0, one.bytes,
                           stream.constants.data() + one.first);
    }
    void operator()(const command::SetViewport& one) const {
        vkCmdSetViewport(handle, 0, 1, &one.viewport);
    }
    void operator()(const command::SetScissor& one) const {
        vkCmdSetScissor(handle, 0, 1, &one.rectangle);
    }
    void operator()(const command::SetBlendColor& one) const {
        vkCmdSetBlendConstants(handle, one.color.data());
    }
    void operator()(const command::SetDepth& one) const {
        vkCmdSetDepthTestEnable(handle, one.tests);
        vkCmdSetDepthWriteEnable(handle, one.writes);
        vkCmdSetDepthCompareOp(handle, one.compare);
    }
    void operator()(const command::SetTopology& one) const {
        vkCmdSetPrimitiveTopology(handle, one.topology);
        vkCmdSetPrimitiveRestartEnable(handle, one.restarts);
    }
    void operator()(const command::BindVertexBuffers& one) const {
        std::array<VkBuffer, buffersPerStage> buffers;
        std::array<VkDeviceSize, buffersPerStage> offsets, sizes;
        for (std::uint32_t n = 0; n < one.count; ++n) {
            const VertexBuffer& bound = stream.vertexBuffers[one.first + n];
            buffers[n] = bound.buffer;
            offsets[n] = bound.offset;
            sizes[n] = bound.size;
        }
        vkCmdBindVertexBuffers2(handle, 0, one.count, buffers.data(), offsets.data(), sizes.data(),
                                nullptr);
    }
    void operator()(const command::BindIndices& one) const {
        vkCmdBindIndexBuffer(handle, one.buffer, one.offset, one.type);
    }
    void operator()(const command::Barrier& one) const {
        const VkDependencyInfo info{.sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
                                    .memoryBarrierCount = one.hasMemory ? 1u : 0u,
                                    .pMemoryBarriers = &one.memory,
                                    .imageMemoryBarrierCount = one.count,
                                    .pImageMemoryBarriers = stream.images.data() + one.first};
        vkCmdPipelineBarrier2(handle, &info);
    }
    void operator()(const command::BeginRendering& one) const {
        beginRendering(target, stream.renderings[one.index], RenderingStart::first);
    }
    void operator()(const command::EndRendering&) const { vkCmdEndRendering(handle); }
    void operator()(const command::CopyImage& one) const {
        vkCmdCopyImage(handle, one.from, one.fromLayout, one.to, one.toLayout, 1, &one.region);
    }
    void operator()(const command::BlitImage& one) const {
        vkCmdBlitImage(handle, one.image, one.layout, one.image, one.layout, 1, &one.region,
                       VK_FILTER_LINEAR);
    }
    void operator()(const command::Draw& one) const {
        vkCmdDraw(handle, one.vertices, one.instances, one.firstVertex, one.firstInstance);
    }
    void operator()(const command::DrawIndexed& one) const {
        vkCmdDrawIndexed(handle, one.indices, one.instances, one.firstIndex, one.vertexOffset,
                         one.firstInstance);
    }
    void operator()(const command::DrawIndirect& one) const {
        const bool drawsSeveral = target.device.features.multiDraws;
        const std::uint32_t most = drawsSeveral ? target.device.limits.maxDrawIndirectCount : 1;
        for (std::uint32_t draw = 0; draw < one.draws; draw += most)
            vkCmdDrawIndirect(handle, one.buffer, one.offset + std::uint64_t{draw} * one.stride,
                              std::min(most, one.draws - draw), one.stride);
    }
    void operator()(const command::Dispatch& one) const {
        vkCmdDispatchBase(handle, one.first[0], one.first[1], one.first[2], one.groups[0],
                          one.groups[1], one.groups[2]);
    }
};

void goOn(VkRenderingAttachmentInfo& attachment) {
    attachment.loadOp = VK_ATTACHMENT_LOAD_OP_LOAD;
    attachment.resolveMode = VK_RESOLVE_MODE_NONE;
}

void begin(VkCommandBuffer handle, const RenderingRecord& rendering) {
    const VkRenderingInfo info{.sType = VK_STRUCTURE_TYPE_RENDERING_INFO,
                               .renderArea = {.extent = rendering.extent},
                               .layerCount = 1,
                               .colorAttachmentCount = rendering.colorCount,
                               .pColorAttachments = rendering.colors.data(),
                               .pDepthAttachment = rendering.hasDepth ? &rendering.depth : nullptr};
    vkCmdBeginRendering(handle, &info);
}

} // namespace

void record(const CommandTarget& target, const Command& command) {
    std::visit(Writer{target}, command);
}

void recordAll(const CommandTarget& target) {
    for (const Command& command : target.stream.commands)
        record(target, command);
}

void beginRendering(const CommandTarget& target, const RenderingRecord& rendering,
                    RenderingStart start) {
    if (start == RenderingStart::first)
        return begin(target.handle, rendering);
    RenderingRecord again = rendering;
    for (std::uint32_t n = 0; n < again.colorCount; ++n)
        goOn(again.colors[n]);
    goOn(again.depth);
    begin(target.handle, again);
}

bool resolves(const RenderingRecord& rendering) {
    return std::any_of(rendering.colors.begin(), rendering.colors.begin() + rendering.colorCount,
                       [](const auto& color) { return color.resolveMode != VK_RESOLVE_MODE_NONE; });
}

void resolve(const CommandTarget& target, const RenderingRecord& rendering) {
    recordMemoryBarrier(target.handle);
    RenderingRecord again = rendering;
    for (std::uint32_t n = 0; n < again.colorCount; ++n)
        again.colors[n].loadOp = VK_ATTACHMENT_LOAD_OP_LOAD;
    again.depth.loadOp = VK_ATTACHMENT_LOAD_OP_LOAD;
    begin(target.handle, again);
    vkCmdEndRendering(target.handle);
}

} // namespace tarnwick::gpu
