// What each Vulkan device of the machine has and lacks, also the devices that cannot be used.
#pragma once

#include "TarnwickGPU/DeviceInfo.h"

#include <string>
#include <vector>

namespace tarnwick::gpu {

struct DeviceReport {
    DeviceInfo info;
    std::string vulkan;               // the version that the device has: "1.3.230"
    std::vector<std::string> missing; // required and not there; empty: it can be used
    std::vector<std::string> lacking; // optional and not there: what works less well without it

    bool operator==(const DeviceReport&) const = default;
};

// In the loader's order. Empty without a driver of Vulkan 1.3. Blocks. Any thread.
std::vector<DeviceReport> deviceReports();

} // namespace tarnwick::gpu
