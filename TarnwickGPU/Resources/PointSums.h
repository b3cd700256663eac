// The sums of a target's pixels, for points that a kernel adds. One for a device: command buffers
// leave it as they found it, full of zeros.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <memory>
#include <mutex>

namespace tarnwick::gpu {

// Lives for as long as a command buffer may use it.
struct PointSums {
    PointSums(Graveyard& yard, const BufferMemory& made) : graveyard(yard), memory(made) {}
    ~PointSums() { bury(graveyard, memory); }
    PointSums(const PointSums&) = delete;
    PointSums& operator=(const PointSums&) = delete;

    Graveyard& graveyard;
    BufferMemory memory;
};

class PointSumsKeeper {
  public:
    PointSumsKeeper(const DeviceRecord& device, Graveyard& graveyard)
        : device_(device), graveyard_(graveyard) {}

    // Sums of at least `bytes`; null when memory is out or a shader cannot see so much. Any thread.
    std::shared_ptr<PointSums> sums(VkDeviceSize bytes);
    void stop() { sums_.reset(); }

  private:
    const DeviceRecord& device_;
    Graveyard& graveyard_;
    std::mutex mutex_;
    std::shared_ptr<PointSums> sums_;
};

} // namespace tarnwick::gpu
