// Pipelines and bindings of the hand-written scenes: one layout for all, with a storage buffer at
// binding 0, a sampled picture at binding 1 and the record of the frame as push constants.
#pragma once

#include "benchmarks/Twin.h"
#include "benchmarks/byhand/Machine.h"

#include <array>
#include <filesystem>
#include <initializer_list>

namespace tarnwick::bench {

// common.glsl's `frame`.
struct HandFrame {
    std::array<float, 2> resolution{};
    float time = 0, timeDelta = 0;
    std::array<float, 2> mouse{};
    std::uint32_t frame = 0, count = 0;
    std::array<float, 4> params{};
};

struct HandGraphics {
    const char* vertex = "FULL_SCREEN"; // sections of the text of the scene
    const char* fragment = "FINAL";
    VkFormat color = VK_FORMAT_B8G8R8A8_UNORM;
    VkFormat depth = VK_FORMAT_UNDEFINED;
    VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_1_BIT;
    VkPrimitiveTopology topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    bool adds = false;       // adds to the target, otherwise replaces
    bool testsDepth = false; // compares "less" and writes depth
};

class HandPipelines {
  public:
    // `scene` is a file of GLSL sections; `filter` is used for the sampled picture.
    HandPipelines(Machine& machine, const std::filesystem::path& scene, VkFilter filter);

    // Throw VulkanError or TwinError.
    VkPipeline compute(const char* section);
    VkPipeline graphics(const HandGraphics& wanted);
    VkDescriptorSet bindings(const HandBuffer* particles, const HandImage& picture);
    void bind(VkCommandBuffer commands, VkDescriptorSet bindings, const HandFrame& frame,
              VkPipelineBindPoint point) const;

  private:
    VkShaderModule module(const char* section, TwinStage stage);
    void makeLayout(VkFilter filter);

    Machine& machine_;
    std::string text_;
    VkDescriptorSetLayout setLayout_ = VK_NULL_HANDLE;
    VkPipelineLayout layout_ = VK_NULL_HANDLE;
    VkDescriptorPool pool_ = VK_NULL_HANDLE;
    VkSampler sampler_ = VK_NULL_HANDLE;
};

// A transition of an image between layouts; the old content is lost if `from` is undefined.
VkImageMemoryBarrier2 handTransition(const HandImage& image, VkImageLayout from, VkImageLayout to);

void handBarrier(VkCommandBuffer commands, std::initializer_list<VkImageMemoryBarrier2> images,
                 const VkMemoryBarrier2* memory = nullptr);

// Begins a pass that covers `color`; `depth` may be null.
void handPass(VkCommandBuffer commands, VkExtent2D extent, const VkRenderingAttachmentInfo& color,
              const VkRenderingAttachmentInfo* depth = nullptr);

} // namespace tarnwick::bench
