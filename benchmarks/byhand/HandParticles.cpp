#include "benchmarks/byhand/HandParticles.h"

namespace tarnwick::bench {

namespace {

constexpr HandImageKind trailsKind{.format = VK_FORMAT_R16G16B16A16_SFLOAT,
                                   .usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT |
                                            VK_IMAGE_USAGE_SAMPLED_BIT};
constexpr VkBufferUsageFlags recordUsage =
    VK_BUFFER_USAGE_STORAGE_BUFFER_BIT | VK_BUFFER_USAGE_TRANSFER_SRC_BIT;
constexpr std::uint32_t threadsInGroup = 256; // common.glsl says so too

// Before the trails: the vertices read the particles.
constexpr VkMemoryBarrier2 updated{.sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
                                   .srcStageMask = VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT,
                                   .srcAccessMask = VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT,
                                   .dstStageMask = VK_PIPELINE_STAGE_2_VERTEX_SHADER_BIT,
                                   .dstAccessMask = VK_ACCESS_2_SHADER_STORAGE_READ_BIT};
// After the trails: the next frame's kernel may start when this frame's kernel has written and the
// vertices have read.
constexpr VkMemoryBarrier2 drawn{
    .sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
    .srcStageMask = VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT | VK_PIPELINE_STAGE_2_VERTEX_SHADER_BIT,
    .srcAccessMask = VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT,
    .dstStageMask = VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT,
    .dstAccessMask = VK_ACCESS_2_SHADER_STORAGE_READ_BIT | VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT};

} // namespace

HandParticles::HandParticles(const HandSceneKind& kind, std::uint32_t stride)
    : HandScene(kind), bytes_(VkDeviceSize{kind.count} * stride),
      particles_(machine_.buffer(bytes_, recordUsage, HandMemory::device)),
      trails_{machine_.image(trailsKind, extent), machine_.image(trailsKind, extent)},
      bindings_{pipelines_.bindings(&particles_, trails_[0]),
                pipelines_.bindings(&particles_, trails_[1])},
      spawn_(pipelines_.compute("SPAWN")), update_(pipelines_.compute("UPDATE")),
      fade_(pipelines_.graphics({.fragment = "FADE", .color = trailsKind.format})),
      dots_(pipelines_.graphics({.vertex = "DOT_VERTEX",
                                 .fragment = "DOT_FRAGMENT",
                                 .color = trailsKind.format,
                                 .topology = VK_PRIMITIVE_TOPOLOGY_POINT_LIST,
                                 .adds = true})) {}

void HandParticles::next() {
    setTime(number_);
    if (number_ > 0)
        current_ = 1 - current_;
    machine_.run([&](VkCommandBuffer commands) {
        step(commands);
        handBarrier(commands,
                    {handTransition(trails_[current_], VK_IMAGE_LAYOUT_UNDEFINED,
                                    VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL),
                     handTransition(target_, VK_IMAGE_LAYOUT_UNDEFINED,
                                    VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL)},
                    &updated);
        trailsPass(commands);
        handBarrier(commands,
                    {handTransition(trails_[current_], VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
                                    VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL)},
                    &drawn);
        finalPass(commands, bindings_[current_]);
    });
    number_++;
}

std::uint32_t HandParticles::groups() const {
    return (frame_.count + threadsInGroup - 1) / threadsInGroup;
}

void HandParticles::step(VkCommandBuffer commands) const {
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_COMPUTE, number_ == 0 ? spawn_ : update_);
    bind(commands, bindings_[1 - current_], VK_PIPELINE_BIND_POINT_COMPUTE);
    vkCmdDispatch(commands, groups(), 1, 1);
}

void HandParticles::updateOften(int times) {
    setTime(1);
    machine_.run([&](VkCommandBuffer commands) {
        for (int i = 0; i < times; i++) {
            vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_COMPUTE, update_);
            bind(commands, bindings_[0], VK_PIPELINE_BIND_POINT_COMPUTE);
            vkCmdDispatch(commands, groups(), 1, 1);
            handBarrier(commands, {}, &drawn);
        }
    });
}

void HandParticles::copyOften(int times) {
    if (!copy_.handle)
        copy_ = machine_.buffer(bytes_, VK_BUFFER_USAGE_TRANSFER_DST_BIT, HandMemory::device);
    const VkMemoryBarrier2 copied{.sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
                                  .srcStageMask = VK_PIPELINE_STAGE_2_COPY_BIT,
                                  .srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT,
                                  .dstStageMask = VK_PIPELINE_STAGE_2_COPY_BIT,
                                  .dstAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT};
    const VkBufferCopy whole{.size = bytes_};
    machine_.run([&](VkCommandBuffer commands) {
        for (int i = 0; i < times; i++) {
            vkCmdCopyBuffer(commands, particles_.handle, copy_.handle, 1, &whole);
            handBarrier(commands, {}, &copied);
        }
    });
}

void HandParticles::trailsPass(VkCommandBuffer commands) const {
    const bool isFirst = number_ == 0;
    handPass(commands, extent,
             {.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
              .imageView = trails_[current_].view,
              .imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
              // Fading writes every pixel.
              .loadOp = isFirst ? VK_ATTACHMENT_LOAD_OP_CLEAR : VK_ATTACHMENT_LOAD_OP_DONT_CARE,
              .storeOp = VK_ATTACHMENT_STORE_OP_STORE});
    bind(commands, bindings_[1 - current_], VK_PIPELINE_BIND_POINT_GRAPHICS);
    if (!isFirst) {
        vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, fade_);
        vkCmdDraw(commands, 3, 1, 0, 0);
    }
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, dots_);
    vkCmdDraw(commands, frame_.count, 1, 0, 0);
    vkCmdEndRendering(commands);
}

} // namespace tarnwick::bench
