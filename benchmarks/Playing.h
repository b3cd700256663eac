// Times of playing particle and grid episodes, compared with the same work written by hand in
// Vulkan.
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
    std::string name;         // for printing, with the count
    std::string file;         // NAME
    std::uint32_t count = 0;  // particles, or squares per side
    std::uint32_t stride = 0; // bytes of a particle; 0 for a grid
    double bar = 0;           // maximum of the ratio
};

// The text of the episode in `folder` with the count of the case, and the scene written by hand
// with the defaults of the episode.
std::string episode(const std::filesystem::path& folder, const SceneCase& one);
HandSceneKind handKind(const gpu::Device& device, const std::filesystem::path& folder,
                       const SceneCase& one, const std::vector<ParamDecl>& params);

// The measured cases, in the order of printing.
std::vector<SceneCase> sceneCases();

struct PlayTime {
    TurnTimes times; // per frame: update, draw, final picture
    PictureDifference pictures;
};

// Plays both from the start, compares a frame, then continues in turns, `rounds` samples each.
// Throws ShaderError, gpu::DeviceError, VulkanError or TwinError.
PlayTime playTime(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder,
                  const SceneCase& one, int rounds);

} // namespace tarnwick::bench
