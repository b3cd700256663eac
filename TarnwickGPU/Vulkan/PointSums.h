// The sums of a target's pixels, for points that a kernel adds. One for a device: command buffers
// leave it as they found it, full of zeros.
#pragma once

#include "TarnwickGPU/Vulkan/Memory.h"

#include <memory>
#include <mutex>

namespace tarnwick::gpu {

struct DeviceState;

// Lives for as long as a command buffer may use it.
struct PointSums {
    PointSums(DeviceState& state, const BufferMemory& made) : device(state), memory(made) {}
    ~PointSums() { bury(device, memory); }
    PointSums(const PointSums&) = delete;
    PointSums& operator=(const PointSums&) = delete;

    DeviceState& device;
    BufferMemory memory;
};

class PointSumsKeeper {
  public:
    // Sums of at least `bytes`; null when memory is out or a shader cannot see so much. Any thread.
    std::shared_ptr<PointSums> sums(DeviceState& device, VkDeviceSize bytes);
    void stop() { sums_.reset(); }

  private:
    std::mutex mutex_;
    std::shared_ptr<PointSums> sums_;
};

} // namespace tarnwick::gpu
