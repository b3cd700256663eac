// The buffer of sums, four numbers per pixel of a target, to which a kernel adds points. All
// command buffers of a device share it, since each sets it to zero again.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <memory>
#include <mutex>

namespace tarnwick::gpu {

// Kept alive by the command buffers that use it.
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

    // At least `bytes` long, zero. Null if memory is exhausted or a descriptor does not support the
    // length. Any thread.
    std::shared_ptr<PointSums> sums(VkDeviceSize bytes);
    void stop() { sums_.reset(); }

  private:
    const DeviceRecord& device_;
    Graveyard& graveyard_;
    std::mutex mutex_;
    std::shared_ptr<PointSums> sums_;
};

} // namespace tarnwick::gpu
