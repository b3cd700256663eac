// How much memory a piece of work holds at its peak.
#pragma once

#include <fstream>
#include <string>

namespace tarnwick {

// Sanitizers keep what was freed.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isMemoryMeasured = false;
#else
inline constexpr bool isMemoryMeasured = true;
#endif

// Resident bytes of the process, the most since beginPeak().
inline std::size_t peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stoul(line.substr(6)) << 10;
    return 0;
}

// Gives the resident bytes now.
inline std::size_t beginPeak() {
    std::ofstream("/proc/self/clear_refs") << 5;
    return peakMemory();
}

} // namespace tarnwick
