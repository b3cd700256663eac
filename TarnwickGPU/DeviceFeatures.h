// The Vulkan features that the layer needs, and those that it takes where a device has them.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <vector>

namespace tarnwick::gpu {

// One chain of feature records, for asking and for switching on. Stays where it was made, since
// its records point at each other.
struct FeatureChain {
    explicit FeatureChain(bool withRobustness2);
    FeatureChain(const FeatureChain&) = delete;
    FeatureChain& operator=(const FeatureChain&) = delete;

    VkPhysicalDeviceFeatures2 core;
    VkPhysicalDeviceVulkan11Features vulkan11;
    VkPhysicalDeviceVulkan12Features vulkan12;
    VkPhysicalDeviceVulkan13Features vulkan13;
    VkPhysicalDeviceRobustness2FeaturesEXT robustness2;
};

// What a device turned out to have beyond the needed.
struct DeviceFeatures {
    bool presents = false;                // VK_KHR_swapchain
    std::uint32_t maxPushDescriptors = 0; // 0: no VK_KHR_push_descriptor
    bool nullDescriptors = false;         // VK_EXT_robustness2's
    bool anisotropy = false;
};

bool isUsable(VkPhysicalDevice device);

bool hasRobustness2(VkPhysicalDevice device);

// Sets `chain`, made with hasRobustness2(), to what is to be switched on, and adds the extensions
// to name with it. A swapchain is only for an instance that has surfaces.
DeviceFeatures chooseFeatures(VkPhysicalDevice device, bool hasSurfaces, FeatureChain& chain,
                              std::vector<const char*>& extensions);

} // namespace tarnwick::gpu
