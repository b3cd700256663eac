#include "benchmarks/byhand/HandScene.h"

#include <cstring>

namespace tarnwick::bench {

HandScene::HandScene(const HandSceneKind& kind)
    : machine_(kind.deviceName), pipelines_(machine_, kind.file, kind.filter),
      frame_{.resolution = {static_cast<float>(sceneWidth), static_cast<float>(sceneHeight)},
             .timeDelta = 1.0f / 60,
             .mouse = {sceneWidth * 0.5f, sceneHeight * 0.5f},
             .count = kind.count,
             .params = kind.params},
      target_(machine_.image(
          {.format = VK_FORMAT_B8G8R8A8_UNORM,
           .usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT},
          extent)),
      final_(pipelines_.graphics({})),
      rows_(machine_.buffer(VkDeviceSize{sceneWidth} * sceneHeight * 4,
                            VK_BUFFER_USAGE_TRANSFER_DST_BIT, HandMemory::host)) {}

void HandScene::setTime(std::uint32_t number) {
    frame_.frame = number;
    frame_.time = static_cast<float>(number) / 60;
}

void HandScene::finalPass(VkCommandBuffer commands, VkDescriptorSet bindings) const {
    handPass(commands, extent,
             {.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
              .imageView = target_.view,
              .imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
              .loadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE,
              .storeOp = VK_ATTACHMENT_STORE_OP_STORE});
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, final_);
    bind(commands, bindings, VK_PIPELINE_BIND_POINT_GRAPHICS);
    vkCmdDraw(commands, 3, 1, 0, 0);
    vkCmdEndRendering(commands);
}

std::vector<std::uint8_t> HandScene::picture() {
    machine_.run([&](VkCommandBuffer commands) {
        handBarrier(commands, {handTransition(target_, VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
                                              VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL)});
        const VkBufferImageCopy whole{
            .imageSubresource = {.aspectMask = VK_IMAGE_ASPECT_COLOR_BIT, .layerCount = 1},
            .imageExtent = {extent.width, extent.height, 1}};
        vkCmdCopyImageToBuffer(commands, target_.handle, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL,
                               rows_.handle, 1, &whole);
        const VkMemoryBarrier2 toHost{.sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
                                      .srcStageMask = VK_PIPELINE_STAGE_2_COPY_BIT,
                                      .srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT,
                                      .dstStageMask = VK_PIPELINE_STAGE_2_HOST_BIT,
                                      .dstAccessMask = VK_ACCESS_2_HOST_READ_BIT};
        handBarrier(commands, {}, &toHost);
    });
    std::vector<std::uint8_t> bytes(std::size_t{sceneWidth} * sceneHeight * 4);
    std::memcpy(bytes.data(), rows_.bytes, bytes.size());
    return bytes;
}

} // namespace tarnwick::bench
