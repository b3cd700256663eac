// A texture's image and its views, which shaders read, store to and draw into. A view is made when
// it is first needed.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <mutex>
#include <vector>

namespace tarnwick::gpu {

class Graveyard;
struct DeviceRecord;

// Vulkan's names for a type of texture.
struct TypeRow {
    TextureType type;
    VkImageType image;
    VkImageViewType view;
    bool isArray = false, isCube = false;
};
const TypeRow& rowOf(TextureType type);

// Whether a texture's usage and format suit a shader's resource.
bool isUsable(const msl::Resource& resource, const TextureDescriptor& descriptor);

struct TextureImage {
    VkImage handle = VK_NULL_HANDLE;
    TextureDescriptor descriptor;
    VkImageAspectFlags aspect = VK_IMAGE_ASPECT_COLOR_BIT;

    bool isDepth() const { return aspect == VK_IMAGE_ASPECT_DEPTH_BIT; }
    VkImageSubresourceRange wholeRange() const {
        return {aspect, 0, VK_REMAINING_MIP_LEVELS, 0, VK_REMAINING_ARRAY_LAYERS};
    }
};

class TextureViews {
  public:
    // Both must outlive the views.
    TextureViews(const DeviceRecord& device, const TextureImage& image)
        : device_(device), image_(image) {}

    // Makes the view of the whole image. False if out of memory.
    bool start();
    void bury(Graveyard& graveyard);

    // The whole image as its own type; null if its usage has no views.
    VkImageView whole() const { return whole_; }
    // The view for a shader's resource. Null if the texture has another shape or component, its
    // usage does not include the resource's, it lacks the resource's level, or memory is exhausted.
    // Any thread.
    VkImageView forResource(const msl::Resource& resource) const;
    // One level of one slice, to draw into. Null if out of memory. Any thread.
    VkImageView attachment(std::uint32_t level = 0, std::uint32_t slice = 0) const;

  private:
    struct Made {
        VkImageViewType type;
        VkImageSubresourceRange range;
        VkFormat format;
        VkImageView view;
    };
    VkFormat format() const;
    VkImageView make(VkImageViewType type, const VkImageSubresourceRange& range,
                     VkFormat format) const;
    VkImageView find(VkImageViewType type, const VkImageSubresourceRange& range,
                     VkFormat format) const;
    VkImageView fromLevel(VkImageViewType type, std::uint32_t level, VkFormat format) const;

    const DeviceRecord& device_;
    const TextureImage& image_;
    VkImageView whole_ = VK_NULL_HANDLE, attachment_ = VK_NULL_HANDLE; // read without a lock
    mutable std::mutex mutex_;
    mutable std::vector<Made> made_;
};

} // namespace tarnwick::gpu
