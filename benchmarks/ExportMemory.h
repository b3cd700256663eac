// The memory used by the export of a short movie and of a long one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct ExportMemory {
    std::int64_t frames = 0;
    double peak = 0; // MB, resident set of the process
};

// Each movie is exported by a process of its own; `self` is the file of this program. Throws
// std::runtime_error if a process does not print its result.
std::vector<ExportMemory> exportMemory(const std::string& self,
                                       const std::vector<std::int64_t>& frames);

// The work of that process: exports `frames` frames and prints its peak in MB. Returns the exit
// status.
int printExportPeak(std::int64_t frames);

} // namespace tarnwick::bench
