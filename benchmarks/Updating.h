// The bytes per second that a particle update moves.
#pragma once

#include "TarnwickGPU/Device.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace tarnwick::bench {

// 10^9 bytes per second; each record is counted once as read and once as written.
struct UpdateSpeed {
    std::uint32_t count = 0, stride = 0; // number of records, and bytes of each
    double ours = 0, twin = 0;           // the update kernel, ours and by hand
    double copying = 0;                  // copying the same bytes between buffers
    double processorRatio = 0; // of the CPU times of the kernels, ours to the hand-written
};

// Measures records that exceed all caches. Throws as playTime does.
UpdateSpeed updateSpeed(const std::shared_ptr<gpu::Device>& device,
                        const std::filesystem::path& folder);

} // namespace tarnwick::bench
