// Textures whose every texel has a number of its own, for tests that know what a shader must see.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::tests {

// A texel: its place, plane (of a 3D texture) or slice, and level.
struct Spot {
    std::uint32_t x = 0, y = 0, slice = 0, level = 0;
};

// 1 + x + 10 y + 100 slice + 2000 level.
int numberOf(const Spot& spot);

bool isInside(const gpu::TextureDescriptor& texture, const Spot& spot);
// All texels; `beyond` is the number of texels outside that it adds in each direction that the type
// has.
std::vector<Spot> spots(const gpu::TextureDescriptor& texture, std::uint32_t beyond = 0);

// A component of the language, or "depth", and the format that keeps four of it.
struct Component {
    const char* name;
    gpu::PixelFormat format;
    std::size_t bytes; // of one
    bool isReal;
};
inline constexpr std::array components{Component{"float", gpu::PixelFormat::rgba32Float, 4, true},
                                       Component{"half", gpu::PixelFormat::rgba16Float, 2, true},
                                       Component{"int", gpu::PixelFormat::rgba32Sint, 4, false},
                                       Component{"uint", gpu::PixelFormat::rgba32Uint, 4, false},
                                       Component{"short", gpu::PixelFormat::rgba16Sint, 2, false},
                                       Component{"ushort", gpu::PixelFormat::rgba16Uint, 2, false},
                                       Component{"depth", gpu::PixelFormat::depth32Float, 4, true},
                                       // of one component, for atomic operations
                                       Component{"r32uint", gpu::PixelFormat::r32Uint, 4, false},
                                       Component{"r32int", gpu::PixelFormat::r32Sint, 4, false}};
const Component& componentOf(const std::string& name);

// A texel's components are its number n, n + 1, n + 2, n + 3; a depth is n / 8192. To be sampled,
// read and (but for depths) written. Null where the device cannot make it.
std::unique_ptr<gpu::Texture>
numberedTexture(gpu::Device& device, gpu::TextureDescriptor descriptor, const Component& component);

} // namespace tarnwick::tests
