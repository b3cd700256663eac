#include "TarnwickGPU/Device/LayerParts.h"

#include <X11/Xlib.h>
#include <vulkan/vulkan_xlib.h>

namespace tarnwick::gpu {

VkSurfaceKHR makeXlibSurface(VkInstance instance, void* display, unsigned long window) {
    auto create = reinterpret_cast<PFN_vkCreateXlibSurfaceKHR>(
        vkGetInstanceProcAddr(instance, "vkCreateXlibSurfaceKHR"));
    const VkXlibSurfaceCreateInfoKHR info{.sType = VK_STRUCTURE_TYPE_XLIB_SURFACE_CREATE_INFO_KHR,
                                          .dpy = static_cast<Display*>(display),
                                          .window = window};
    VkSurfaceKHR surface = VK_NULL_HANDLE;
    if (!create || create(instance, &info, nullptr, &surface) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return surface;
}

} // namespace tarnwick::gpu
