// The driver's compiled pipelines, kept on disk between runs. Only for GPUs; the CPU driver has a
// cache of its own.
#pragma once

#include "TarnwickGPU/Vulkan/DeviceRecord.h"

#include <vulkan/vulkan.h>

#include <filesystem>

namespace tarnwick::gpu {

class PipelineCache {
  public:
    explicit PipelineCache(const DeviceRecord& device) : device_(device) {}

    // Reads the file of earlier runs. A file that cannot be read or written is ignored.
    void open();
    void close();
    VkPipelineCache handle() const { return handle_; } // null on CPU devices

  private:
    const DeviceRecord& device_;
    std::filesystem::path file_;
    VkPipelineCache handle_ = VK_NULL_HANDLE;
};

// $XDG_CACHE_HOME/tarnwick, or ~/.cache/tarnwick; empty without either.
std::filesystem::path cacheFolder();

} // namespace tarnwick::gpu
