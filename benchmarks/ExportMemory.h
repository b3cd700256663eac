// How much memory an export takes, of a short movie and of a long one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct ExportMemory {
    std::int64_t frames = 0;
    double peak = 0; // MB of the process's resident set
};

// Each movie by a process of its own, `self` being this program's file. Throws std::runtime_error
// where a process does not say.
std::vector<ExportMemory> exportMemory(const std::string& self,
                                       const std::vector<std::int64_t>& frames);

// What that process does: exports so many frames, prints its peak in MB. The process's status.
int printExportPeak(std::int64_t frames);

} // namespace tarnwick::bench
