#include "TarnwickGPU/Commands/Barriers.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

// The host stage: the CPU reads shared memory once the submission has completed.
constexpr VkPipelineStageFlags2 anyStage =
    VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT | VK_PIPELINE_STAGE_2_HOST_BIT;
constexpr VkAccessFlags2 anyAccess = VK_ACCESS_2_MEMORY_READ_BIT | VK_ACCESS_2_MEMORY_WRITE_BIT;

} // namespace

void Barriers::enter(const TextureParts& texture, const TextureUse& use, Contents contents) {
    auto barrier = std::find_if(images_.begin(), images_.end(),
                                [&](const auto& one) { return one.image == texture.image.handle; });
    if (barrier == images_.end()) {
        const VkImageMemoryBarrier2 fresh{.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
                                          .srcStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT,
                                          .srcAccessMask = VK_ACCESS_2_MEMORY_WRITE_BIT,
                                          .oldLayout = texture.rest,
                                          .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                          .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                          .image = texture.image.handle,
                                          .subresourceRange = texture.image.wholeRange()};
        barrier = images_.insert(images_.end(), fresh);
    }
    barrier->dstStageMask = use.stages;
    barrier->dstAccessMask = use.access;
    barrier->newLayout = use.layout;
    if (contents == Contents::discarded)
        barrier->oldLayout = VK_IMAGE_LAYOUT_UNDEFINED;
}

void Barriers::leave(const TextureParts& texture, const TextureUse& use) {
    images_.push_back({.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
                       .srcStageMask = use.stages,
                       .srcAccessMask = use.access,
                       .dstStageMask = anyStage,
                       .dstAccessMask = anyAccess,
                       .oldLayout = use.layout,
                       .newLayout = texture.rest,
                       .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                       .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                       .image = texture.image.handle,
                       .subresourceRange = texture.image.wholeRange()});
}

void Barriers::afterWork(VkPipelineStageFlags2 stages, VkAccessFlags2 writes) {
    stages_ |= stages;
    writes_ |= writes;
}

void Barriers::flush(CommandStream& stream) {
    if (images_.empty() && stages_ == 0)
        return;
    const VkMemoryBarrier2 memory{.sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
                                  .srcStageMask = stages_,
                                  .srcAccessMask = writes_,
                                  .dstStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT |
                                                  VK_PIPELINE_STAGE_2_HOST_BIT,
                                  .dstAccessMask = anyAccess};
    stream.barrier(stages_ != 0 ? &memory : nullptr, images_);
    forget();
}

void Barriers::forget() {
    images_.clear();
    stages_ = 0;
    writes_ = 0;
}

} // namespace tarnwick::gpu
