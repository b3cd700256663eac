#include "benchmarks/byhand/HandGrid.h"

namespace tarnwick::bench {

namespace {

constexpr VkFormat colorFormat = VK_FORMAT_B8G8R8A8_UNORM, depthFormat = VK_FORMAT_D32_SFLOAT;
constexpr VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_4_BIT;

} // namespace

HandGrid::HandGrid(const HandSceneKind& kind)
    : HandScene(kind),
      color_(machine_.image({colorFormat, VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT, samples}, extent)),
      depth_(machine_.image({depthFormat, VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT, samples},
                            extent)),
      resolved_(machine_.image(
          {colorFormat, VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_SAMPLED_BIT}, extent)),
      bindings_(pipelines_.bindings(nullptr, resolved_)),
      background_(pipelines_.graphics(
          {.fragment = "BACKGROUND", .depth = depthFormat, .samples = samples})),
      grid_(pipelines_.graphics({.vertex = "GRID_VERTEX",
                                 .fragment = "GRID_FRAGMENT",
                                 .depth = depthFormat,
                                 .samples = samples,
                                 .testsDepth = true})) {}

void HandGrid::next() {
    setTime(number_++);
    machine_.run([&](VkCommandBuffer commands) {
        const VkImageLayout attachment = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
        handBarrier(commands, {handTransition(color_, VK_IMAGE_LAYOUT_UNDEFINED, attachment),
                               handTransition(resolved_, VK_IMAGE_LAYOUT_UNDEFINED, attachment),
                               handTransition(target_, VK_IMAGE_LAYOUT_UNDEFINED, attachment),
                               handTransition(depth_, VK_IMAGE_LAYOUT_UNDEFINED,
                                              VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL)});
        gridPass(commands);
        handBarrier(commands, {handTransition(resolved_, attachment,
                                              VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL)});
        finalPass(commands, bindings_);
    });
}

void HandGrid::gridPass(VkCommandBuffer commands) const {
    const VkRenderingAttachmentInfo depth{.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
                                          .imageView = depth_.view,
                                          .imageLayout = VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL,
                                          .loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR,
                                          .storeOp = VK_ATTACHMENT_STORE_OP_DONT_CARE,
                                          .clearValue = {.depthStencil = {1, 0}}};
    handPass(commands, extent,
             {.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
              .imageView = color_.view,
              .imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
              .resolveMode = VK_RESOLVE_MODE_AVERAGE_BIT,
              .resolveImageView = resolved_.view,
              .resolveImageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
              .loadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE, // the background covers it
              .storeOp = VK_ATTACHMENT_STORE_OP_DONT_CARE},
             &depth);
    bind(commands, bindings_, VK_PIPELINE_BIND_POINT_GRAPHICS);
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, background_);
    vkCmdDraw(commands, 3, 1, 0, 0);
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, grid_);
    vkCmdDraw(commands, frame_.count * frame_.count * 6, 1, 0, 0);
    vkCmdEndRendering(commands);
}

} // namespace tarnwick::bench
