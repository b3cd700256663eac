// The buffers and textures of a device by the numbers that stand for them in argument buffers: the
// address of a buffer, the handle of a texture.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

namespace tarnwick::gpu {

struct BufferMemory;
struct TextureParts;

// Any thread.
class Residents {
  public:
    void add(const BufferMemory& buffer);
    void remove(const BufferMemory& buffer);
    std::uint32_t add(const TextureParts& texture); // gives its handle, which is not 0
    void remove(std::uint32_t texture);

    // The part of a buffer from an address on. Absent if no buffer has the address.
    struct Range {
        VkBuffer buffer = VK_NULL_HANDLE;
        VkDeviceSize offset = 0, size = 0; // bytes
    };
    std::optional<Range> bufferAt(VkDeviceAddress address) const;
    const TextureParts* texture(std::uint32_t handle) const; // null for an unknown handle

  private:
    mutable std::mutex mutex_;
    std::map<VkDeviceAddress, Range> buffers_; // by first address
    std::map<std::uint32_t, const TextureParts*> textures_;
    std::uint32_t last_ = 0; // handle
};

} // namespace tarnwick::gpu
