// How many bytes a particle update moves a second.
#pragma once

#include "TarnwickGPU/Device.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace tarnwick::bench {

// 10^9 bytes a second, each record counted once as read and once as written.
struct UpdateSpeed {
    std::uint32_t count = 0, stride = 0; // records and their bytes
    double ours = 0, twin = 0;           // the update kernel, ours and by hand
    double copying = 0;                  // copying as many bytes from buffer to buffer
    double processorRatio = 0;           // of the kernels' processor times, ours to the other's
};

// Of records that no cache holds. Throws as playTime does.
UpdateSpeed updateSpeed(const std::shared_ptr<gpu::Device>& device,
                        const std::filesystem::path& folder);

} // namespace tarnwick::bench
