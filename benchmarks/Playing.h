// Times to play particle and grid episodes, beside the same work written by hand in Vulkan.
#pragma once

#include "TarnwickCore/Params.h"
#include "TarnwickGPU/Device.h"
#include "benchmarks/PictureDifference.h"
#include "benchmarks/Turns.h"
#include "benchmarks/byhand/HandScene.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::bench {

// An episode NAME.metal, and NAME.glsl beside it.
struct SceneCase {
    std::string name;         // with the count, as it is printed
    std::string file;         // NAME
    std::uint32_t count = 0;  // particles, or squares a side
    std::uint32_t stride = 0; // bytes of a particle; 0 for a grid
    double bar = 0;           // of the ratio
};

// The episode's text in `folder` with the case's count, and the scene by hand with the episode's
// defaults.
std::string episode(const std::filesystem::path& folder, const SceneCase& one);
HandSceneKind handKind(const gpu::Device& device, const std::filesystem::path& folder,
                       const SceneCase& one, const std::vector<ParamDecl>& params);

// What is measured, in the order of printing.
std::vector<SceneCase> sceneCases();

struct PlayTime {
    TurnTimes times; // a frame: update, draw, final picture
    PictureDifference pictures;
};

// Plays both from the start, compares a frame, then plays on in turns, `rounds` samples of each.
// Throws ShaderError, gpu::DeviceError, VulkanError or TwinError.
PlayTime playTime(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder,
                  const SceneCase& one, int rounds);

} // namespace tarnwick::bench
