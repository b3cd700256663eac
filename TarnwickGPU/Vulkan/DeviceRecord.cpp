#include "TarnwickGPU/Vulkan/DeviceRecord.h"

#include "TarnwickGPU/Vulkan/PhysicalDevices.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <thread>

namespace tarnwick::gpu {

namespace {

// The packaged CPU driver ends an invocation silently after 65,535 loop iterations; the shader's
// own count must come first. A GPU must finish before its driver declares the device lost, some
// seconds after the job began: if each of two million pixels iterates that often, a small
// integrated GPU of about 2e11 iterations a second takes 2.5 seconds.
constexpr std::uint32_t cpuLoopBudget = 60'000;
constexpr std::uint32_t gpuLoopBudget = 250'000;

constexpr std::uint32_t mostQueues = 2; // one per Lane

void createDevice(DeviceRecord& record, bool hasSurfaces) {
    FeatureChain chain(optionalRecords(record.physical));
    std::vector<const char*> extensions;
    record.features = chooseFeatures(record.physical, hasSurfaces, chain, extensions);
    constexpr std::array<float, mostQueues> priorities{1, 1};
    const VkDeviceQueueCreateInfo queue{.sType = VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO,
                                        .queueFamilyIndex = record.queueFamily,
                                        .queueCount = record.queueCount,
                                        .pQueuePriorities = priorities.data()};
    const VkDeviceCreateInfo info{.sType = VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO,
                                  .pNext = &chain.core,
                                  .queueCreateInfoCount = 1,
                                  .pQueueCreateInfos = &queue,
                                  .enabledExtensionCount =
                                      static_cast<std::uint32_t>(extensions.size()),
                                  .ppEnabledExtensionNames = extensions.data()};
    if (vkCreateDevice(record.physical, &info, nullptr, &record.handle) != VK_SUCCESS)
        record.handle = VK_NULL_HANDLE;
}

void readProperties(DeviceRecord& record) {
    VkPhysicalDeviceVulkan11Properties vulkan11{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_1_PROPERTIES};
    VkPhysicalDeviceVulkan13Properties vulkan13{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_PROPERTIES, .pNext = &vulkan11};
    VkPhysicalDeviceProperties2 properties{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2,
                                           .pNext = &vulkan13};
    vkGetPhysicalDeviceProperties2(record.physical, &properties);
    vkGetPhysicalDeviceMemoryProperties(record.physical, &record.memory);
    record.limits = properties.properties.limits;
    record.maxBufferSize = vulkan13.maxBufferSize;
    const bool clips = vulkan11.pointClippingBehavior == VK_POINT_CLIPPING_BEHAVIOR_ALL_CLIP_PLANES;
    record.points = {.largest = record.features.largePoints ? record.limits.pointSizeRange[1] : 1,
                     .dropsOutside = clips && !record.info.isCPU,
                     .splats = record.info.isCPU && record.features.sums};
    record.loopBudget = record.info.isCPU ? cpuLoopBudget : gpuLoopBudget;
    record.processors = std::max(1u, std::thread::hardware_concurrency());
    const char* units = std::getenv("TARNWICK_PIECES");
    record.unitsOfPieces = units ? std::strtoull(units, nullptr, 10) : 0;
    if (record.features.maxPushDescriptors > 0)
        record.pushDescriptorSet = reinterpret_cast<PFN_vkCmdPushDescriptorSetKHR>(
            vkGetDeviceProcAddr(record.handle, "vkCmdPushDescriptorSetKHR"));
}

} // namespace

DeviceRecord openDevice(const PhysicalDevice& chosen, bool hasSurfaces) {
    DeviceRecord record{.physical = chosen.handle,
                        .queueFamily = chosen.queueFamily,
                        .queueCount = std::min(chosen.queueCount, mostQueues),
                        .info = chosen.info};
    createDevice(record, hasSurfaces);
    if (record.handle)
        readProperties(record);
    return record;
}

} // namespace tarnwick::gpu
