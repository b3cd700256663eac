// The resources that are bound in place of missing or unsuitable ones: zeros to read, and memory to
// store to.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"
#include "TarnwickMSL/EntryPoint.h"

#include <mutex>
#include <vector>

namespace tarnwick::gpu {

class Transfers;
struct TextureParts;

// Bytes of a stand-in for a buffer: the maximum size of a uniform buffer on every device.
inline constexpr VkDeviceSize standInBytes = 65536;

class StandIns {
  public:
    StandIns(const DeviceRecord& device, Graveyard& graveyard, Transfers& transfers);
    ~StandIns();
    bool start(); // false if out of memory
    void stop();  // the GPU is idle

    // One texel of the resource's shape and component, zero unless a shader stored to it. Made when
    // a pipeline first needs it; null if out of memory. Any thread.
    const TextureParts* texture(const msl::Resource& resource);

    BufferMemory zeros, scratch;

  private:
    struct Made;
    const DeviceRecord& device_;
    Graveyard& graveyard_;
    Transfers& transfers_;
    std::mutex mutex_;
    std::vector<Made> made_;
};

} // namespace tarnwick::gpu
