// The name, driver and kind of a device.
#pragma once

#include <string>

namespace tarnwick::gpu {

struct DeviceInfo {
    std::string name;   // as the driver gives it
    std::string driver; // name and version
    bool isCPU = false; // a software rasteriser

    bool operator==(const DeviceInfo&) const = default;
};

} // namespace tarnwick::gpu
