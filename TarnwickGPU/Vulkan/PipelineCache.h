// The driver's compiled pipelines, kept on disk between runs for real GPUs (the CPU driver keeps a
// cache of its own).
#pragma once

#include <vulkan/vulkan.h>

#include <filesystem>

namespace tarnwick::gpu {

struct DeviceState;

class PipelineCache {
  public:
    // Reads what an earlier run left. A file that cannot be read or written is as none.
    void open(const DeviceState& device);
    void close(const DeviceState& device);
    VkPipelineCache handle() const { return handle_; } // null where none is kept

  private:
    std::filesystem::path file_;
    VkPipelineCache handle_ = VK_NULL_HANDLE;
};

// $XDG_CACHE_HOME/tarnwick, or ~/.cache/tarnwick; empty without either.
std::filesystem::path cacheFolder();

} // namespace tarnwick::gpu
