// The Vulkan features that the layer needs, and those that it takes where a device has them.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <vector>

namespace tarnwick::gpu {

// Records of extensions, only where a device has those.
struct OptionalRecords {
    bool robustness2 = false; // VK_EXT_robustness2
    bool atomicFloat = false; // VK_EXT_shader_atomic_float
};
OptionalRecords optionalRecords(VkPhysicalDevice device);

// One chain of feature records, for asking and for switching on. Stays where it was made, since
// its records point at each other.
struct FeatureChain {
    explicit FeatureChain(const OptionalRecords& records);
    FeatureChain(const FeatureChain&) = delete;
    FeatureChain& operator=(const FeatureChain&) = delete;

    VkPhysicalDeviceFeatures2 core;
    VkPhysicalDeviceVulkan11Features vulkan11;
    VkPhysicalDeviceVulkan12Features vulkan12;
    VkPhysicalDeviceVulkan13Features vulkan13;
    VkPhysicalDeviceRobustness2FeaturesEXT robustness2;
    VkPhysicalDeviceShaderAtomicFloatFeaturesEXT atomicFloat;
};

// What a device turned out to have beyond the needed.
struct DeviceFeatures {
    bool presents = false;                // VK_KHR_swapchain
    std::uint32_t maxPushDescriptors = 0; // 0: no VK_KHR_push_descriptor
    bool nullDescriptors = false;         // VK_EXT_robustness2's
    bool anisotropy = false;
    bool addsFloatsInBuffers = false; // VK_EXT_shader_atomic_float's
    bool multiDraws = false;          // several draws of one indirect command
    bool sums = false;        // atomic additions of 64 bits, and stores in fragment functions
    bool largePoints = false; // larger than a pixel
    bool mirrorClamp = false; // samplerMirrorClampToEdge
    std::vector<std::uint32_t> capabilities; // Capabilities.h
};

bool isUsable(VkPhysicalDevice device);

// Sets `chain`, made with optionalRecords(), to what is to be switched on, and adds the extensions
// to name with it. A swapchain is only for an instance that has surfaces.
DeviceFeatures chooseFeatures(VkPhysicalDevice device, bool hasSurfaces, FeatureChain& chain,
                              std::vector<const char*>& extensions);

} // namespace tarnwick::gpu
