// The shapes of textures in SPIR-V.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <spirv/unified1/spirv.hpp11>

#include <cstdint>
#include <optional>

namespace tarnwick::msl::spirv {

struct ImageShape {
    TextureShape shape;
    spv::Dim dimension;
    bool isArray = false, isMultisample = false;
    unsigned axes = 0; // of a size, without layers
    // Required for sampled textures, and for textures that the shader writes.
    std::optional<spv::Capability> sampled = std::nullopt, storage = std::nullopt;
};

// Throws CompilerFault on a shape that is not in the table.
const ImageShape& shapeOf(TextureShape shape);

// Image operands (SPIR-V 1.6, 3.14).
namespace image_operand {
inline constexpr std::uint32_t bias = 0x1, lod = 0x2, grad = 0x4, constOffset = 0x8, sample = 0x40;
}

} // namespace tarnwick::msl::spirv
