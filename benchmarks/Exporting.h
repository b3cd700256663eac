// Times to export an episode as a movie, beside the floor of that time.
#pragma once

#include "TarnwickCore/Movies/ExportPreset.h"
#include "TarnwickGPU/Device.h"
#include "benchmarks/Turns.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct ExportCase {
    std::string name; // what --only takes and what is printed
    std::filesystem::path episode;
    ExportPreset preset;
    std::int64_t frames = 0;
};

// A light, a medium and a heavy episode in two sizes, in the order of printing.
std::vector<ExportCase> exportCases(const std::filesystem::path& shaders,
                                    const std::filesystem::path& episodes);

// Milliseconds of a whole movie.
struct ExportTime {
    Sample drawing;   // alone: every frame into memory
    Sample encoding;  // alone: the same frames, from memory, with the movie's settings, into a file
    Sample exporting; // as a user exports it
    unsigned cores = 1;

    // What no export is quicker than: its two halves side by side, on that many cores.
    double sharing() const { return (drawing.processor + encoding.processor) / cores; }
    double floor() const { return std::max({drawing.wall, encoding.wall, sharing()}); }
    double ratio() const { return exporting.wall / floor(); }
    double processorRatio() const {
        return exporting.processor / (drawing.processor + encoding.processor);
    }
};

struct ExportTimes {
    ExportTime shortest;    // of the rounds, each value by itself
    double medianRatio = 0; // of the rounds' ratios
};

// Draws the movie once, then does the three by turns, `rounds` of each. Throws ShaderError,
// ExportError, MovieError or gpu::DeviceError.
ExportTimes exportTimes(gpu::Device& device, const ExportCase& one, int rounds);

} // namespace tarnwick::bench
