// Vulkan's records of device features, chained as vkGetPhysicalDeviceFeatures2 and vkCreateDevice
// take them.
#pragma once

#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

// The extensions' records that the chain includes: only those that the device has.
struct OptionalRecords {
    bool robustness2 = false;   // VK_EXT_robustness2
    bool atomicFloat = false;   // VK_EXT_shader_atomic_float
    bool instanceRates = false; // VK_EXT_vertex_attribute_divisor
    bool imageAtomics = false;  // VK_EXT_shader_image_atomic_int64
    bool feedback = false;      // VK_EXT_attachment_feedback_loop_layout
    bool barycentric = false;   // VK_KHR_fragment_shader_barycentric
    bool interlock = false;     // VK_EXT_fragment_shader_interlock
};

// Neither copied nor moved, since its records point at each other.
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
    VkPhysicalDeviceVertexAttributeDivisorFeaturesEXT instanceRates;
    VkPhysicalDeviceShaderImageAtomicInt64FeaturesEXT imageAtomics;
    VkPhysicalDeviceAttachmentFeedbackLoopLayoutFeaturesEXT feedback;
    VkPhysicalDeviceFragmentShaderBarycentricFeaturesKHR barycentric;
    VkPhysicalDeviceFragmentShaderInterlockFeaturesEXT interlock;
};

} // namespace tarnwick::gpu
