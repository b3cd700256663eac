// The connection to the Vulkan loader, with the validation layer if the environment asks
// for it.
#pragma once

#include "TarnwickGPU/Vulkan/LayerMessages.h"

#include <vulkan/vulkan.h>

#include <memory>

namespace tarnwick::gpu {

struct Instance {
    // Null without a loader or without a Vulkan 1.3 driver.
    static std::shared_ptr<Instance> make();

    Instance() = default;
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    VkInstance handle = VK_NULL_HANDLE;
    VkDebugUtilsMessengerEXT messenger = VK_NULL_HANDLE;
    bool presents = false; // VK_KHR_surface and an extension for a kind of windows are enabled
    LayerUse layerUse;           // nothing without the layer
};

} // namespace tarnwick::gpu
