// Presents frames on a surface of Wayland.
#pragma once

#include "TarnwickGPU/Layer.h"

#include <memory>

namespace tarnwick::gpu {

class Device;

// `display` is a wl_display*, `surface` a wl_surface* of it; both must outlive the layer. Null if
// the device cannot present on the surface, or if WAYLAND_DISPLAY was not set when the device was
// opened. Vulkan's surface is kept until the process ends, so this is for a program with one
// window.
std::unique_ptr<Layer> newWaylandLayer(Device& device, void* display, void* surface);

} // namespace tarnwick::gpu
