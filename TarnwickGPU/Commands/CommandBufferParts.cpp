#include "TarnwickGPU/Commands/CommandBufferParts.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Device/LayerParts.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/BufferParts.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickGPU/SamplerState.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tarnwick::gpu {

namespace {

constexpr std::size_t mostBytes = 65536;

} // namespace

const char* nameOf(Encoding encoding) {
    constexpr std::array names{"none", "render", "compute", "blit"};
    return names[static_cast<std::size_t>(encoding)];
}

const char* nameOf(CommandBufferStatus status) {
    constexpr std::array names{"recording", "committed", "completed", "error"};
    return names[static_cast<std::size_t>(status)];
}

std::unique_ptr<CommandBufferParts> CommandBufferParts::make(std::shared_ptr<DeviceState> device) {
    auto parts = std::make_unique<CommandBufferParts>(std::move(device));
    const VkDevice handle = parts->device->record.handle;
    const VkCommandPoolCreateInfo poolInfo{.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO,
                                           .flags = VK_COMMAND_POOL_CREATE_TRANSIENT_BIT,
                                           .queueFamilyIndex = parts->device->record.queueFamily};
    if (vkCreateCommandPool(handle, &poolInfo, nullptr, &parts->pool) != VK_SUCCESS)
        return nullptr;
    const VkCommandBufferAllocateInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO,
                                           .commandPool = parts->pool,
                                           .level = VK_COMMAND_BUFFER_LEVEL_PRIMARY,
                                           .commandBufferCount = 1};
    if (vkAllocateCommandBuffers(handle, &info, &parts->handle) != VK_SUCCESS ||
        !parts->reports.make(parts->device->record))
        return nullptr;
    return parts;
}

CommandBufferParts::~CommandBufferParts() {
    Graveyard& graveyard = device->graveyard;
    ring.bury(graveyard);
    sets.bury(graveyard);
    reports.bury(graveyard);
    graveyard.bury(pool);
}

void CommandBufferParts::begin() {
    ring.reset();
    sets.reset(device->record);
    reports.reset();
    barriers.forget();
    sums.reset();
    copies.clear();
    touched.clear();
    presented.clear();
    status = CommandBufferStatus::recording;
    failed = false;
    encoding = Encoding::nothing;
    if (stream.use_count() > 1)
        stream = std::make_shared<CommandStream>();
    else
        stream->clear();
}

void CommandBufferParts::startEncoding(Encoding kind) {
    precondition(status == CommandBufferStatus::recording, "an encoder is made before commit()",
                 "status", nameOf(status));
    precondition(encoding == Encoding::nothing, "a command buffer has one open encoder at a time",
                 "open encoder", nameOf(encoding));
    encoding = kind;
    tables = {};
    resourcesChanged = true;
    wroteMemory = false;
    renderPipeline = nullptr;
    computePipeline = nullptr;
    boundPipeline = VK_NULL_HANDLE;
    topology.reset();
    factorInstanceStride = 0;
    factorScale = 1;
    rendering = Rendering::due;
    colorInputs = {};
}

void CommandBufferParts::endEncoding(Encoding kind) {
    precondition(encoding == kind, "endEncoding() is called once, on the open encoder",
                 "open encoder", nameOf(encoding), "ended", nameOf(kind));
    encoding = Encoding::nothing;
}

void CommandBufferParts::enter(const TextureParts& texture, const TextureUse& use,
                               Contents contents) {
    DrawableSlot* slot = texture.drawable;
    if (slot) {
        touch(*slot);
        if (!std::exchange(slot->isDrawn, true))
            contents = Contents::discarded; // a drawable starts with no contents
    }
    barriers.enter(texture, use, contents);
}

void CommandBufferParts::touch(DrawableSlot& slot) {
    if (std::find(touched.begin(), touched.end(), &slot) == touched.end())
        touched.push_back(&slot);
    precondition(touched.size() <= mostDrawables, "a command buffer has at most 7 drawables",
                 "drawables", touched.size());
}

void CommandBufferParts::setBytes(TableIndex table, const void* bytes, std::size_t length,
                                  std::uint32_t index) {
    precondition(length > 0 && length <= mostBytes, "setBytes copies 1 to 65536 bytes", "bytes",
                 length);
    precondition(index < buffersPerStage, "the index of a buffer is in [0, 30]", "index", index);
    const BytesRing::Slice slice = ring.take(device->record, length);
    if (!slice.buffer) {
        failed = true;
        return;
    }
    std::memcpy(slice.bytes, bytes, length);
    tables[static_cast<std::size_t>(table)].buffers[index] = {
        slice.buffer, slice.offset, length, slice.bytes, slice.bytes, slice.address};
    resourcesChanged = true;
}

void CommandBufferParts::setBuffer(TableIndex table, const Buffer& buffer, std::size_t offset,
                                   std::uint32_t index) {
    precondition(index < buffersPerStage, "the index of a buffer is in [0, 30]", "index", index);
    place(table, buffer, offset, index);
}

void CommandBufferParts::place(TableIndex table, const Buffer& buffer, std::size_t offset,
                               std::uint32_t index) {
    const BufferMemory& memory = buffer.parts().memory;
    const VkPhysicalDeviceLimits& limits = device->record.limits;
    precondition(offset < memory.size, "the offset is within the buffer", "offset", offset, "bytes",
                 memory.size);
    precondition(offset % limits.minStorageBufferOffsetAlignment == 0 &&
                     offset % limits.minUniformBufferOffsetAlignment == 0,
                 "the offset is a multiple of the device's alignments", "offset", offset,
                 "alignment of storage buffers", limits.minStorageBufferOffsetAlignment,
                 "alignment of uniform buffers", limits.minUniformBufferOffsetAlignment);
    tables[static_cast<std::size_t>(table)].buffers[index] = {
        memory.buffer,
        offset,
        memory.size - offset,
        nullptr,
        memory.bytes ? memory.bytes + offset : nullptr,
        memory.address ? memory.address + offset : 0};
    resourcesChanged = true;
}

void CommandBufferParts::setTexture(TableIndex table, const Texture* texture, std::uint32_t index) {
    precondition(index < msl::mostTextures, "the index of a texture is in [0, 127]", "index",
                 index);
    tables[static_cast<std::size_t>(table)].textures[index] = texture ? &texture->parts() : nullptr;
    resourcesChanged = true;
}

void CommandBufferParts::setSampler(TableIndex table, const SamplerState* state,
                                    std::uint32_t index) {
    precondition(index < msl::mostSamplers, "the index of a sampler is in [0, 15]", "index", index);
    tables[static_cast<std::size_t>(table)].samplers[index] = state ? &state->parts() : nullptr;
    resourcesChanged = true;
}

} // namespace tarnwick::gpu
