// A texture's views: what shaders see of it and what is drawn into, made when first wanted.
#pragma once

#include "TarnwickGPU/Format.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <mutex>
#include <vector>

namespace tarnwick::gpu {

struct DeviceState;
struct TextureParts;

// What a type of texture is in Vulkan.
struct TypeRow {
    TextureType type;
    VkImageType image;
    VkImageViewType view;
    bool isArray = false, isCube = false;
};
const TypeRow& rowOf(TextureType type);

class TextureViews {
  public:
    // Makes the view of the whole. False when memory is out.
    bool start(const TextureParts& texture);
    void bury(DeviceState& device);

    // All of the texture as its own type; null where its usage has no views.
    VkImageView whole() const { return whole_; }
    // Of all slices of one type, from a level on. Null when memory is out.
    VkImageView of(const TextureParts& texture, VkImageViewType type, std::uint32_t level) const;
    // One level of one slice.
    VkImageView attachment(const TextureParts& texture, std::uint32_t level,
                           std::uint32_t slice) const;

  private:
    struct Made {
        VkImageViewType type;
        VkImageSubresourceRange range;
        VkImageView view;
    };
    VkImageView find(const TextureParts& texture, VkImageViewType type,
                     const VkImageSubresourceRange& range) const;

    VkImageView whole_ = VK_NULL_HANDLE, attachment_ = VK_NULL_HANDLE; // used without a lock
    mutable std::mutex mutex_;
    mutable std::vector<Made> made_;
};

} // namespace tarnwick::gpu
