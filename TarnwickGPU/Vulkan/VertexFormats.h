// The formats of vertex attributes: their layout in memory and their formats in Vulkan.
#pragma once

#include "TarnwickGPU/VertexDescriptor.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <string_view>

namespace tarnwick::gpu {

enum class NumberKind : std::uint8_t { float_, unorm, snorm, uint, sint };

// How the components follow each other.
enum class Packing : std::uint8_t {
    array,     // components of 8, 16 or 32 bits, one after the other
    bgra,      // the same, with the first and the third exchanged
    ten,       // 10, 10, 10 and 2 bits of a word, from its lowest bit on
    eleven,    // floats without a sign, of 11, 11 and 10 bits of a word
    sharedBits // 9, 9 and 9 bits of a word and an exponent of 5 bits
};

struct VertexFormatRow {
    VertexFormat format;
    std::string_view name;
    VkFormat vulkan;
    NumberKind kind;
    std::uint32_t components; // [1, 4]
    std::uint32_t bits;       // of a component
    Packing packing = Packing::array;

    bool isInteger() const { return kind == NumberKind::uint || kind == NumberKind::sint; }
};

const VertexFormatRow& vertexFormat(VertexFormat format);

} // namespace tarnwick::gpu
