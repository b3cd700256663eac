// The commands of a command buffer as records. They become Vulkan's commands when the command
// buffer is committed: all at once, or in pieces whose size is chosen by the time that the pieces
// before took (Pieces.h).
//
// The records have Vulkan's handles only, so the objects behind them may be destroyed after the
// commit. The vectors keep their memory, so that a warm frame allocates nothing.
#pragma once

#include "TarnwickGPU/Commands/WorkTraits.h"
#include "TarnwickGPU/Format.h"

#include <vulkan/vulkan.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

namespace tarnwick::gpu {

namespace command {

struct BindPipeline {
    VkPipelineBindPoint point;
    VkPipeline pipeline;
};
struct PushDescriptors {
    VkPipelineBindPoint point;
    VkPipelineLayout layout;
    std::uint32_t first, count; // in CommandStream::writes
};
struct BindDescriptors {
    VkPipelineBindPoint point;
    VkPipelineLayout layout;
    VkDescriptorSet set;
};
struct PushConstants {
    VkPipelineLayout layout;
    VkShaderStageFlags stages;
    std::uint32_t first, bytes; // in CommandStream::constants
};
struct SetViewport {
    VkViewport viewport;
};
struct SetScissor {
    VkRect2D rectangle;
};
struct SetBlendColor {
    std::array<float, 4> color;
};
struct SetDepth {
    bool tests, writes;
    VkCompareOp compare;
};
struct SetTopology {
    VkPrimitiveTopology topology;
    bool restarts;
};
struct BindVertexBuffers {
    std::uint32_t first, count; // in CommandStream::vertexBuffers
};
struct BindIndices {
    VkBuffer buffer;
    VkDeviceSize offset;
    VkIndexType type;
};
struct Barrier {
    bool hasMemory;
    VkMemoryBarrier2 memory;
    std::uint32_t first, count; // in CommandStream::images
};
struct BeginRendering {
    std::uint32_t index; // in CommandStream::renderings
};
struct EndRendering {};
struct CopyImage {
    VkImage from;
    VkImageLayout fromLayout;
    VkImage to;
    VkImageLayout toLayout;
    VkImageCopy region;
};
struct BlitImage {
    VkImage image;
    VkImageLayout layout;
    VkImageBlit region;
};

// Work. `traits`: the index in CommandStream::traits.
struct Draw {
    std::uint32_t traits;
    std::uint32_t vertices, instances, firstVertex, firstInstance;
};
struct DrawIndexed {
    std::uint32_t traits;
    std::uint32_t indices, instances, firstIndex;
    std::int32_t vertexOffset;
    std::uint32_t firstInstance;
};
struct DrawIndirect {
    std::uint32_t traits;
    std::uint32_t draws, stride;
    std::uint32_t vertices; // of all draws, at most
    VkBuffer buffer;
    VkDeviceSize offset;
};
struct Dispatch {
    std::uint32_t traits;
    std::array<std::uint32_t, 3> first, groups;
    std::uint32_t threads; // of a threadgroup
};

} // namespace command

using Command = std::variant<command::BindPipeline, command::PushDescriptors,
                             command::BindDescriptors, command::PushConstants, command::SetViewport,
                             command::SetScissor, command::SetBlendColor, command::SetDepth,
                             command::SetTopology, command::BindVertexBuffers, command::BindIndices,
                             command::Barrier, command::BeginRendering, command::EndRendering,
                             command::CopyImage, command::BlitImage, command::Draw,
                             command::DrawIndexed, command::DrawIndirect, command::Dispatch>;

struct DescriptorWrite {
    std::uint32_t binding;
    VkDescriptorType type;
    union {
        VkDescriptorBufferInfo buffer;
        VkDescriptorImageInfo image;
        VkBufferView texels;
    };
};

// Points into `write`; without a set.
VkWriteDescriptorSet vulkanWrite(const DescriptorWrite& write);

struct VertexBuffer {
    VkBuffer buffer;
    VkDeviceSize offset, size;
};

struct RenderingRecord {
    std::array<VkRenderingAttachmentInfo, mostColors> colors;
    std::uint32_t colorCount = 0;
    VkRenderingAttachmentInfo depth;
    bool hasDepth = false;
    VkExtent2D extent{};
    bool scissorsExactly = true; // false: a scissor changes samples at its edges
};

struct CommandStream {
    void add(const Command& command) { commands.push_back(command); }
    // Adds a push of the descriptors of `writes` from `first` on.
    void pushDescriptors(VkPipelineBindPoint point, VkPipelineLayout layout, std::size_t first);
    void pushConstants(VkPipelineLayout layout, VkShaderStageFlags stages,
                       std::span<const std::byte> bytes);
    void barrier(const VkMemoryBarrier2* memory, std::span<const VkImageMemoryBarrier2> barriers);
    void beginRendering(const RenderingRecord& rendering);
    // The index of the traits of work that is added next.
    std::uint32_t traitsIndex(const std::shared_ptr<WorkTraits>& given);
    void clear();

    std::vector<Command> commands;
    std::vector<DescriptorWrite> writes;
    std::vector<std::byte> constants;
    std::vector<VertexBuffer> vertexBuffers;
    std::vector<VkImageMemoryBarrier2> images;
    std::vector<RenderingRecord> renderings;
    std::vector<std::shared_ptr<WorkTraits>> traits;
};

} // namespace tarnwick::gpu
