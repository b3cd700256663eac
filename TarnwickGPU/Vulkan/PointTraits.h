// How a device draws its own points.
#pragma once

namespace tarnwick::gpu {

struct PointTraits {
    float largest = 1; // pixels; larger ones come out as large as that
    // A point whose centre lies outside of the viewport shows nothing (Vulkan 1.3, 27.4). The
    // packaged CPU driver says so of itself, but draws what lies inside.
    bool dropsOutside = true;
    // Adding many small points in a kernel takes less time than drawing them, as on the CPU.
    bool splats = false;
};

} // namespace tarnwick::gpu
