// The Vulkan features that the layer requires, and those that it enables if a device has them.
#pragma once

#include "TarnwickGPU/Vulkan/Capabilities.h"
#include "TarnwickGPU/Vulkan/FeatureChain.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::gpu {

// The optional features of a device.
struct DeviceFeatures {
    bool presents = false;                // VK_KHR_swapchain
    std::uint32_t maxPushDescriptors = 0; // 0: no VK_KHR_push_descriptor
    bool nullDescriptors = false;         // of VK_EXT_robustness2
    bool anisotropy = false;
    bool addsFloatsInBuffers = false; // of VK_EXT_shader_atomic_float
    bool ordersFragments = false;     // of VK_EXT_fragment_shader_interlock
    bool multiDraws = false;          // an indirect command may have several draws
    bool sums = false;                // stores in fragment functions
    bool wideSums = false;            // atomic additions of 64 bits
    bool largePoints = false;         // larger than a pixel
    bool addresses = false;           // bufferDeviceAddress
    bool mirrorClamp = false;         // samplerMirrorClampToEdge
    bool instanceRates = false;       // of VK_EXT_vertex_attribute_divisor
    bool textureAtomics64 = false;    // of VK_EXT_shader_image_atomic_int64
    bool readsTargets = false;        // a draw may read its targets (ColorInputs.h)
    bool twoSources = false;          // dualSrcBlend
    bool independentBlend = false;    // each target may blend in its own way
    // Types of shaders, in registers and in buffers of all kinds.
    bool int8 = false, int16 = false, int64 = false, float16 = false;
    Groups groups;
    std::vector<std::uint32_t> capabilities; // Capabilities.h
};

// Vulkan's names of the features that the layer requires and the device lacks.
std::vector<std::string> missingFeatures(VkPhysicalDevice device);
// The extensions' records that may be in the device's FeatureChain.
OptionalRecords optionalRecords(VkPhysicalDevice device);

// Sets `chain`, made with optionalRecords(), to the features to enable, and adds the names of the
// extensions to enable with them. Enables VK_KHR_swapchain only if the instance has surfaces.
DeviceFeatures chooseFeatures(VkPhysicalDevice device, bool hasSurfaces, FeatureChain& chain,
                              std::vector<const char*>& extensions);

} // namespace tarnwick::gpu
