#include "benchmarks/byhand/Machine.h"

#include <utility>

namespace tarnwick::bench {

namespace {

VkPhysicalDevice deviceOfName(VkInstance instance, const std::string& name) {
    std::uint32_t count = 0;
    vkEnumeratePhysicalDevices(instance, &count, nullptr);
    std::vector<VkPhysicalDevice> devices(count);
    vkEnumeratePhysicalDevices(instance, &count, devices.data());
    for (VkPhysicalDevice device : devices) {
        VkPhysicalDeviceProperties properties;
        vkGetPhysicalDeviceProperties(device, &properties);
        if (name == properties.deviceName)
            return device;
    }
    throw VulkanError("There is no Vulkan device named " + name + ".");
}

std::uint32_t drawingFamily(VkPhysicalDevice device) {
    std::uint32_t count = 0;
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, nullptr);
    std::vector<VkQueueFamilyProperties> families(count);
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, families.data());
    constexpr VkQueueFlags needed = VK_QUEUE_GRAPHICS_BIT | VK_QUEUE_COMPUTE_BIT;
    for (std::uint32_t family = 0; family < count; family++)
        if ((families[family].queueFlags & needed) == needed)
            return family;
    throw VulkanError("The Vulkan device has no queue that draws and computes.");
}

} // namespace

void need(VkResult result, const char* call) {
    if (result != VK_SUCCESS)
        throw VulkanError(std::string("Vulkan refused ") + call + " (" +
                          std::to_string(static_cast<int>(result)) + ").");
}

Machine::Machine(const std::string& deviceName) {
    const VkApplicationInfo application{.sType = VK_STRUCTURE_TYPE_APPLICATION_INFO,
                                        .apiVersion = VK_API_VERSION_1_3};
    const VkInstanceCreateInfo info{.sType = VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO,
                                    .pApplicationInfo = &application};
    need(vkCreateInstance(&info, nullptr, &instance_), "an instance");
    atEnd([this] { vkDestroyInstance(instance_, nullptr); });
    physical_ = deviceOfName(instance_, deviceName);
    family_ = drawingFamily(physical_);
    makeDevice();

    const VkCommandPoolCreateInfo pool{.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO,
                                       .queueFamilyIndex = family_};
    need(vkCreateCommandPool(device_, &pool, nullptr, &pool_), "a command pool");
    atEnd([this] { vkDestroyCommandPool(device_, pool_, nullptr); });
    const VkCommandBufferAllocateInfo buffer{.sType =
                                                 VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO,
                                             .commandPool = pool_,
                                             .level = VK_COMMAND_BUFFER_LEVEL_PRIMARY,
                                             .commandBufferCount = 1};
    need(vkAllocateCommandBuffers(device_, &buffer, &commands_), "a command buffer");
    const VkFenceCreateInfo fence{.sType = VK_STRUCTURE_TYPE_FENCE_CREATE_INFO};
    need(vkCreateFence(device_, &fence, nullptr, &fence_), "a fence");
    atEnd([this] { vkDestroyFence(device_, fence_, nullptr); });
}

Machine::~Machine() {
    if (device_)
        vkDeviceWaitIdle(device_);
    for (auto end = ends_.rbegin(); end != ends_.rend(); ++end)
        (*end)();
}

void Machine::makeDevice() {
    VkPhysicalDeviceVulkan13Features features13{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES,
        .synchronization2 = VK_TRUE,
        .dynamicRendering = VK_TRUE,
        .maintenance4 = VK_TRUE}; // shaderc writes LocalSizeId
    const VkPhysicalDeviceFeatures features{.largePoints = VK_TRUE};
    const float priority = 1;
    const VkDeviceQueueCreateInfo queue{.sType = VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO,
                                        .queueFamilyIndex = family_,
                                        .queueCount = 1,
                                        .pQueuePriorities = &priority};
    const VkDeviceCreateInfo info{.sType = VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO,
                                  .pNext = &features13,
                                  .queueCreateInfoCount = 1,
                                  .pQueueCreateInfos = &queue,
                                  .pEnabledFeatures = &features};
    need(vkCreateDevice(physical_, &info, nullptr, &device_), "a device");
    atEnd([this] { vkDestroyDevice(device_, nullptr); });
    vkGetDeviceQueue(device_, family_, 0, &queue_);
}

void Machine::allocate(const VkMemoryRequirements& needs, HandMemory memory,
                       VkDeviceMemory& result) {
    const VkMemoryPropertyFlags wanted =
        memory == HandMemory::device
            ? VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT
            : VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT;
    VkPhysicalDeviceMemoryProperties all;
    vkGetPhysicalDeviceMemoryProperties(physical_, &all);
    std::uint32_t type = 0;
    while (type < all.memoryTypeCount && ((needs.memoryTypeBits >> type & 1) == 0 ||
                                          (all.memoryTypes[type].propertyFlags & wanted) != wanted))
        type++;
    const VkMemoryAllocateInfo info{.sType = VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO,
                                    .allocationSize = needs.size,
                                    .memoryTypeIndex = type};
    need(type < all.memoryTypeCount ? vkAllocateMemory(device_, &info, nullptr, &result)
                                    : VK_ERROR_OUT_OF_DEVICE_MEMORY,
         "memory");
    atEnd([this, result] { vkFreeMemory(device_, result, nullptr); });
}

HandBuffer Machine::buffer(VkDeviceSize bytes, VkBufferUsageFlags usage, HandMemory memory) {
    HandBuffer buffer;
    const VkBufferCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO, .size = bytes, .usage = usage};
    need(vkCreateBuffer(device_, &info, nullptr, &buffer.handle), "a buffer");
    atEnd([this, handle = buffer.handle] { vkDestroyBuffer(device_, handle, nullptr); });
    VkMemoryRequirements needs;
    vkGetBufferMemoryRequirements(device_, buffer.handle, &needs);
    VkDeviceMemory block = VK_NULL_HANDLE;
    allocate(needs, memory, block);
    need(vkBindBufferMemory(device_, buffer.handle, block, 0), "a buffer's memory");
    if (memory == HandMemory::host)
        need(vkMapMemory(device_, block, 0, VK_WHOLE_SIZE, 0, &buffer.bytes), "mapped memory");
    return buffer;
}

HandImage Machine::image(const HandImageKind& kind, VkExtent2D extent) {
    HandImage image{.extent = extent};
    const VkImageCreateInfo info{.sType = VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO,
                                 .imageType = VK_IMAGE_TYPE_2D,
                                 .format = kind.format,
                                 .extent = {extent.width, extent.height, 1},
                                 .mipLevels = 1,
                                 .arrayLayers = 1,
                                 .samples = kind.samples,
                                 .usage = kind.usage};
    need(vkCreateImage(device_, &info, nullptr, &image.handle), "an image");
    atEnd([this, handle = image.handle] { vkDestroyImage(device_, handle, nullptr); });
    VkMemoryRequirements needs;
    vkGetImageMemoryRequirements(device_, image.handle, &needs);
    VkDeviceMemory block = VK_NULL_HANDLE;
    allocate(needs, HandMemory::device, block);
    need(vkBindImageMemory(device_, image.handle, block, 0), "an image's memory");
    const VkImageAspectFlags aspect =
        kind.format == VK_FORMAT_D32_SFLOAT ? VK_IMAGE_ASPECT_DEPTH_BIT : VK_IMAGE_ASPECT_COLOR_BIT;
    const VkImageViewCreateInfo view{.sType = VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO,
                                     .image = image.handle,
                                     .viewType = VK_IMAGE_VIEW_TYPE_2D,
                                     .format = kind.format,
                                     .subresourceRange = {aspect, 0, 1, 0, 1}};
    need(vkCreateImageView(device_, &view, nullptr, &image.view), "an image's view");
    atEnd([this, handle = image.view] { vkDestroyImageView(device_, handle, nullptr); });
    return image;
}

void Machine::begin() {
    need(vkResetCommandPool(device_, pool_, 0), "a fresh command pool");
    const VkCommandBufferBeginInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                        .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    need(vkBeginCommandBuffer(commands_, &info), "commands");
}

void Machine::submitAndWait() {
    need(vkEndCommandBuffer(commands_), "the end of commands");
    const VkCommandBufferSubmitInfo commands{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO,
                                             .commandBuffer = commands_};
    const VkSubmitInfo2 submission{.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
                                   .commandBufferInfoCount = 1,
                                   .pCommandBufferInfos = &commands};
    need(vkQueueSubmit2(queue_, 1, &submission, fence_), "a submission");
    need(vkWaitForFences(device_, 1, &fence_, VK_TRUE, UINT64_MAX), "a wait");
    need(vkResetFences(device_, 1, &fence_), "a fresh fence");
}

} // namespace tarnwick::bench
