// How a device draws its own points.
#pragma once

namespace tarnwick::gpu {

struct PointTraits {
    float largest = 1; // pixels; larger points are drawn with this size
    // A point whose centre is outside of the viewport is not drawn (Vulkan 1.3, 27.4). The packaged
    // CPU driver says that it clips such points, but draws the part that is inside.
    bool dropsOutside = true;
    // Adding many small points in a kernel is faster than drawing them, as on the CPU.
    bool splats = false;
};

} // namespace tarnwick::gpu
