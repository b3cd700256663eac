// Times of exporting an episode as a movie, compared with their lower bound.
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
    std::string name; // for --only and for printing
    std::filesystem::path episode;
    ExportPreset preset;
    std::int64_t frames = 0;
};

// A light, a medium and a heavy episode in two sizes, in the order of printing.
std::vector<ExportCase> exportCases(const std::filesystem::path& shaders,
                                    const std::filesystem::path& episodes);

// Milliseconds of a whole movie.
struct ExportTime {
    Sample drawing;   // only drawing: every frame into memory
    Sample encoding;  // only encoding: the same frames from memory into a file
    Sample exporting; // the whole export
    unsigned cores = 1;

    // The lower bound of an export: its two halves in parallel on `cores` cores.
    double sharing() const { return (drawing.processor + encoding.processor) / cores; }
    double floor() const { return std::max({drawing.wall, encoding.wall, sharing()}); }
    double ratio() const { return exporting.wall / floor(); }
    double processorRatio() const {
        return exporting.processor / (drawing.processor + encoding.processor);
    }
};

struct ExportTimes {
    ExportTime shortest;    // shortest of the rounds, each value separately
    double medianRatio = 0; // of the ratios of the rounds
};

// Draws the movie once, then repeats the three in turn, `rounds` times each. Throws ShaderError,
// ExportError, MovieError or gpu::DeviceError.
ExportTimes exportTimes(gpu::Device& device, const ExportCase& one, int rounds);

} // namespace tarnwick::bench
