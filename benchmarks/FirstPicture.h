// The time from a saved episode to its first picture.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::gpu {
class Device;
} // namespace tarnwick::gpu

namespace tarnwick::bench {

struct FirstPictureCase {
    std::string name; // "first picture NAME"
    std::string text; // of the episode
};

// Milliseconds of the wall clock, the shortest of the rounds each.
struct FirstPictureTime {
    double compile = 0;   // assembling, and compiling to SPIR-V
    double pipelines = 0; // making the pipelines
    double picture = 0;   // drawing the first picture, and waiting for it

    double all() const { return compile + pipelines + picture; }
};

// One episode of each kind, of the folder of the episodes.
std::vector<FirstPictureCase> firstPictureCases(const std::filesystem::path& episodes);

// The device must keep no compiled shaders on disk. Throws ShaderError or gpu::DeviceError.
FirstPictureTime firstPictureTime(gpu::Device& device, const FirstPictureCase& one, int rounds);

} // namespace tarnwick::bench
