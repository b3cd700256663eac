// The printed sections of the benchmark. Each returns whether its bars were reached.
#pragma once

#include "TarnwickGPU/Device.h"
#include "benchmarks/Case.h"
#include "benchmarks/Drawing.h"
#include "benchmarks/Editing.h"
#include "benchmarks/Exporting.h"
#include "benchmarks/FirstPicture.h"
#include "benchmarks/Playing.h"
#include "benchmarks/Texts.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnwick::bench {

// Milliseconds from source text to SPIR-V, and the share of each step; `self` is the file of this
// program.
bool printCompiling(const std::vector<Case>& all, const std::string& self, int rounds);

// Milliseconds to draw one picture of each fragment shader.
bool printDrawing(Drawing& drawing, const std::vector<Case>& all, int rounds);

// Milliseconds from the text of each episode to its first picture: our part, and the driver's.
bool printFirstPictures(gpu::Device& device, const std::vector<FirstPictureCase>& all, int rounds);

// Milliseconds from each edit of an episode to its picture in the player: our part, and the
// driver's.
bool printEdits(const std::vector<EditCase>& all, int rounds);

// Milliseconds to play one frame of each particle and grid scene.
bool printPlaying(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder,
                  const std::vector<SceneCase>& all, int rounds);

// Bytes per second that the update kernel of a scene moves, compared with copying.
bool printUpdating(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder);

// The speed of the parts without a device, as the median of `rounds` samples.
bool printTexts(const std::vector<TextCase>& all, int rounds);

// The speed of rendering sound relative to real time, and the time of analysing sound per frame.
bool printSounding(gpu::Device& device);

// Milliseconds of exporting each movie, compared with the lower bound.
bool printExporting(gpu::Device& device, const std::vector<ExportCase>& all, int rounds);

// The additional memory of a movie of 10,000 frames compared with 500; `self` is the file of this
// program.
bool printExportMemory(const std::string& self);

} // namespace tarnwick::bench
