// The device that draws the live picture.
#pragma once

#include "TarnwickGPU/Device.h"

#include <memory>

namespace tarnwick::player {

// The system's default device; null without one. The threads of a CPU driver have a lower priority
// than the others of the process, so that the window answers and compiling goes on while they draw.
std::shared_ptr<gpu::Device> openDrawingDevice();

} // namespace tarnwick::player
