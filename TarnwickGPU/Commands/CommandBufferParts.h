// The Vulkan sides of queues and command buffers, and the state of the open encoder. A command
// buffer's parts are used again once the GPU is done with them, and their containers keep their
// memory, so that a warm frame allocates nothing from the heap.
#pragma once

#include "TarnwickGPU/CommandRecords.h"
#include "TarnwickGPU/Commands/Barriers.h"
#include "TarnwickGPU/Commands/BytesRing.h"
#include "TarnwickGPU/Commands/CommandStream.h"
#include "TarnwickGPU/Commands/DescriptorSets.h"
#include "TarnwickGPU/Commands/LoopReports.h"
#include "TarnwickGPU/Commands/ResourceTable.h"
#include "TarnwickGPU/Device/BindingLayout.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Resources/PointSums.h"

#include <vulkan/vulkan.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::gpu {

class Buffer;
class SamplerState;
struct ComputePipelineParts;
struct DrawableSlot;
struct QueueParts;
struct RenderPipelineParts;

// The drawables that one command buffer may draw into or present.
inline constexpr std::size_t mostDrawables = 7;

enum class Encoding : std::uint8_t { nothing, render, compute, blit };

// As violations print them.
const char* nameOf(Encoding encoding);
const char* nameOf(CommandBufferStatus status);

// The targets of a render encoder are loaded or cleared at its first draw, so that kernels of the
// layer can run before (due). `broken`: interrupted for such a kernel, to continue with the
// targets' contents.
enum class Rendering : std::uint8_t { due, open, broken };

// What a fragment function sees as the colour so far of a colour attachment (ColorInputs.h).
struct ColorInput {
    VkImageView view = VK_NULL_HANDLE; // null: reads as zero
    VkImageLayout layout = VK_IMAGE_LAYOUT_UNDEFINED;
    msl::TextureComponent component = msl::TextureComponent::none;
    bool isTarget = false; // the target itself, which has that layout
};

struct CommandBufferParts {
    // Null if out of memory.
    static std::unique_ptr<CommandBufferParts> make(std::shared_ptr<DeviceState> device);
    explicit CommandBufferParts(std::shared_ptr<DeviceState> state) : device(std::move(state)) {}
    ~CommandBufferParts();
    CommandBufferParts(const CommandBufferParts&) = delete;
    CommandBufferParts& operator=(const CommandBufferParts&) = delete;

    void begin();
    void startEncoding(Encoding kind);
    void endEncoding(Encoding kind);
    // The encoder has the use `use` of `texture` from the next flush of `barriers` on.
    void enter(const TextureParts& texture, const TextureUse& use, Contents contents);
    // The command buffer uses a drawable: the GPU waits until the swapchain has released its image.
    void touch(DrawableSlot& slot);
    void setBytes(TableIndex table, const void* bytes, std::size_t length, std::uint32_t index);
    void setBuffer(TableIndex table, const Buffer& buffer, std::size_t offset, std::uint32_t index);
    // The same for any index of the table.
    void place(TableIndex table, const Buffer& buffer, std::size_t offset, std::uint32_t index);
    void setTexture(TableIndex table, const Texture* texture, std::uint32_t index);
    void setSampler(TableIndex table, const SamplerState* state, std::uint32_t index);

    std::shared_ptr<DeviceState> device;
    std::shared_ptr<QueueParts> queue; // null while in QueueParts::resting
    VkCommandPool pool = VK_NULL_HANDLE;
    VkCommandBuffer handle = VK_NULL_HANDLE;
    // Shared with the pieces that are being submitted.
    std::shared_ptr<CommandStream> stream = std::make_shared<CommandStream>();
    std::uint64_t submission = 0; // the last of these parts
    // Of a command buffer that was submitted whole: when, and the seconds that it should take.
    std::optional<std::chrono::steady_clock::time_point> committedAt;
    double knownSeconds = 0;
    CommandBufferStatus status = CommandBufferStatus::recording;
    bool failed = false; // out of memory while encoding; commit() gives an error

    BytesRing ring;
    DescriptorSets sets;
    LoopReports reports;
    Barriers barriers;
    std::vector<DrawableSlot*> touched, presented;

    // The open encoder's state.
    Encoding encoding = Encoding::nothing;
    std::array<ResourceTable, 2> tables; // by TableIndex
    bool resourcesChanged = true;
    bool wroteMemory = false; // the last dispatch stored to buffers or textures
    const RenderPipelineParts* renderPipeline = nullptr;
    const ComputePipelineParts* computePipeline = nullptr;
    std::array<std::uint32_t, mostThreadgroupPointers> threadgroupLengths{}; // by index; 0: not set
    std::optional<Region> stageInRegion;
    VkPipeline boundPipeline = VK_NULL_HANDLE;
    std::optional<VkPrimitiveTopology> topology;
    std::uint32_t factorInstanceStride = 0; // bytes
    float factorScale = 1;
    RenderPassDescriptor pass;
    Rendering rendering = Rendering::due;
    std::array<ColorInput, mostColors> colorInputs;
    std::vector<std::unique_ptr<TextureParts>>
        copies; // of targets; buried with this command buffer
    Viewport viewport;
    ScissorRect scissor;
    // The buffers that the layer's own code binds at the next draw or dispatch; PointPipelines.h
    // has the indices.
    std::array<VkDescriptorBufferInfo, 2> ownBuffers{};
    std::shared_ptr<PointSums> sums; // kept while the GPU may use them
};

struct QueueParts {
    std::shared_ptr<DeviceState> device;
    Lane lane = Lane::pictures;
    std::vector<std::unique_ptr<CommandBufferParts>>
        resting; // finished or in flight, with no CommandBuffer
    std::size_t made = 0;
};

} // namespace tarnwick::gpu
