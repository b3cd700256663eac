// Whether the machine runs on its battery.
#pragma once

#include <filesystem>

namespace tarnwick {

// As the kernel says it (Documentation/ABI/testing/sysfs-class-power): no supply from the mains is
// online, and a battery of the system itself, not of a mouse or a pen, is discharging. False if
// nothing is known. `supplies` has a folder for each supply.
bool runsOnBattery(const std::filesystem::path& supplies = "/sys/class/power_supply");

} // namespace tarnwick
