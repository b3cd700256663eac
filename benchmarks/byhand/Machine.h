// Plain Vulkan 1.3 for the hand-written scenes: one device, one queue, one command buffer, and the
// objects that a scene makes once. Independent of TarnwickGPU.
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

// A Vulkan call of a scene does not succeed. what() names the call.
struct VulkanError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class HandMemory : std::uint8_t { device, host };

struct HandBuffer {
    VkBuffer handle = VK_NULL_HANDLE;
    void* bytes = nullptr; // mapped for the host, otherwise null
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

// The destructor destroys all objects that a machine made. Each call throws VulkanError if Vulkan
// reports an error.
class Machine {
  public:
    // Uses the device whose driver gives the name `deviceName`.
    explicit Machine(const std::string& deviceName);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    VkDevice device() const { return device_; }
    HandBuffer buffer(VkDeviceSize bytes, VkBufferUsageFlags usage, HandMemory memory);
    HandImage image(const HandImageKind& kind, VkExtent2D extent);

    // Records with `record`, submits, and blocks until the device has completed.
    template <class Record> void run(Record&& record) {
        begin();
        record(commands_);
        submitAndWait();
    }

    // Records how to destroy an object; the last recorded is destroyed first.
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
