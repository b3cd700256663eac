// Plain Vulkan 1.3 for the hand-written scenes: one device, one queue, one command buffer, and the
// objects that a scene makes once. Nothing of TarnwickGPU is used here.
#pragma once

#include <vulkan/vulkan.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::bench {

// Vulkan refused something that the scenes need; what() names the call.
struct VulkanError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class HandMemory : std::uint8_t { device, host };

struct HandBuffer {
    VkBuffer handle = VK_NULL_HANDLE;
    void* bytes = nullptr; // where the host sees it, else null
};

struct HandImage {
    VkImage handle = VK_NULL_HANDLE;
    VkImageView view = VK_NULL_HANDLE;
    VkExtent2D extent{};
};

struct HandImageKind {
    VkFormat format = VK_FORMAT_UNDEFINED;
    VkImageUsageFlags usage = 0;
    VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_1_BIT;
};

// Everything that a machine made goes with it. Each call throws VulkanError where Vulkan refuses.
class Machine {
  public:
    // The device whose name the driver gives as `deviceName`.
    explicit Machine(const std::string& deviceName);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    VkDevice device() const { return device_; }
    HandBuffer buffer(VkDeviceSize bytes, VkBufferUsageFlags usage, HandMemory memory);
    HandImage image(const HandImageKind& kind, VkExtent2D extent);

    // Records with `record`, submits, and blocks until the device is done.
    template <class Record> void run(Record&& record) {
        begin();
        record(commands_);
        submitAndWait();
    }

    // Notes how something is destroyed; the last noted goes first.
    void atEnd(std::function<void()> destroy) { ends_.push_back(std::move(destroy)); }

  private:
    void makeDevice();
    void allocate(const VkMemoryRequirements& needs, HandMemory memory, VkDeviceMemory& result);
    void begin();
    void submitAndWait();

    std::vector<std::function<void()>> ends_;
    VkInstance instance_ = VK_NULL_HANDLE;
    VkPhysicalDevice physical_ = VK_NULL_HANDLE;
    VkDevice device_ = VK_NULL_HANDLE;
    std::uint32_t family_ = 0;
    VkQueue queue_ = VK_NULL_HANDLE;
    VkCommandPool pool_ = VK_NULL_HANDLE;
    VkCommandBuffer commands_ = VK_NULL_HANDLE;
    VkFence fence_ = VK_NULL_HANDLE;
};

// Throws VulkanError, which names `call`, unless `result` is success.
void need(VkResult result, const char* call);

} // namespace tarnwick::bench
