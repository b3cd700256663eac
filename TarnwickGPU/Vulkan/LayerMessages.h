// Messages of the validation layer, printed on standard error: findings, and logs of shaders
// (os_log), which the layer's debug printf sends.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <string_view>

namespace tarnwick::gpu {

// Why the layer is loaded. The environment decides.
struct LayerUse {
    static LayerUse ofEnvironment();

    bool validates = false;     // TARNWICK_VALIDATION is 1, abort or gpu
    bool checksShaders = false; // it is gpu, and no logs are printed: the layer does only one of both
    bool printsLogs = false;    // TARNWICK_SHADER_LOGS is 1
};

VkDebugUtilsMessengerCreateInfoEXT messengerInfo(const LayerUse& use);

// The log in a message of debug printf, after the layer's own words.
std::string_view logOf(std::string_view message);

// Findings so far, over all instances. Any thread.
std::uint64_t validationMessageCount();

} // namespace tarnwick::gpu
