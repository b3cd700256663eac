// One dispatch of a kernel that takes 16 bytes at [[buffer(1)]] a thread and gives four numbers at
// [[buffer(0)]], with a texture and a sampler at their index 0.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::tests {

// Waits for the kernel, and expects it to complete.
std::vector<std::array<float, 4>>
kernelResults(gpu::Device& device, gpu::CommandQueue& queue, const gpu::Library& library,
              const std::string& kernel, std::span<const std::byte> inputs,
              const gpu::Texture* texture, const gpu::SamplerState* sampler = nullptr);

} // namespace tarnwick::tests
