// The bench's sections, as they are printed. Each answers whether its bars were reached.
#pragma once

#include "TarnwickGPU/Device.h"
#include "benchmarks/Case.h"
#include "benchmarks/Drawing.h"
#include "benchmarks/Exporting.h"
#include "benchmarks/Playing.h"
#include "benchmarks/Texts.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnwick::bench {

// Milliseconds from source text to SPIR-V; `self` is this program's file.
bool printCompiling(const std::vector<Case>& all, const std::string& self, int rounds);

// Milliseconds to draw one picture of each fragment shader.
bool printDrawing(Drawing& drawing, const std::vector<Case>& all, int rounds);

// Milliseconds to play one frame of each particle and grid scene.
bool printPlaying(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder,
                  const std::vector<SceneCase>& all, int rounds);

// Bytes a second that a scene's update kernel moves, beside copying.
bool printUpdating(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder);

// The speed of each part without a device, as the median of `rounds` samples.
bool printTexts(const std::vector<TextCase>& all, int rounds);

// How many times faster than real time sound is rendered, and what hearing it takes a frame.
bool printSounding(gpu::Device& device);

// Milliseconds to export each movie, beside the floor of that time.
bool printExporting(gpu::Device& device, const std::vector<ExportCase>& all, int rounds);

// How much more memory a movie of 10,000 frames takes than one of 500; `self` is this program's
// file.
bool printExportMemory(const std::string& self);

} // namespace tarnwick::bench
