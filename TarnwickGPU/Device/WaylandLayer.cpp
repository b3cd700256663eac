#include "TarnwickGPU/WaylandLayer.h"

#include "TarnwickGPU/Device.h"

#include <vulkan/vulkan.h>
#include <vulkan/vulkan_wayland.h>

#include <wayland-client.h>

namespace tarnwick::gpu {

std::unique_ptr<Layer> newWaylandLayer(Device& device, void* display, void* surface) {
    auto* instance = static_cast<VkInstance>(device.vulkanInstance());
    auto create = reinterpret_cast<PFN_vkCreateWaylandSurfaceKHR>(
        vkGetInstanceProcAddr(instance, "vkCreateWaylandSurfaceKHR"));
    const VkWaylandSurfaceCreateInfoKHR info{.sType =
                                                 VK_STRUCTURE_TYPE_WAYLAND_SURFACE_CREATE_INFO_KHR,
                                             .display = static_cast<wl_display*>(display),
                                             .surface = static_cast<wl_surface*>(surface)};
    VkSurfaceKHR made = VK_NULL_HANDLE;
    if (!create || create(instance, &info, nullptr, &made) != VK_SUCCESS)
        return nullptr;
    return device.newLayer(static_cast<void*>(made));
}

} // namespace tarnwick::gpu
