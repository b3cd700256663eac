// Where the attributes of a function are in buffers: the vertex descriptor of a render pipeline and
// the stage-input descriptor of a compute pipeline.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnwick::gpu {

// The formats of attributes. Formats of integers give integers, all others give floats. Components
// that the format does not have are 0, 0, 0, 1.
enum class VertexFormat : std::uint8_t {
    invalid,
    uchar,
    uchar2,
    uchar3,
    uchar4,
    char_,
    char2,
    char3,
    char4,
    ucharNormalized,
    uchar2Normalized,
    uchar3Normalized,
    uchar4Normalized,
    charNormalized,
    char2Normalized,
    char3Normalized,
    char4Normalized,
    ushort,
    ushort2,
    ushort3,
    ushort4,
    short_,
    short2,
    short3,
    short4,
    ushortNormalized,
    ushort2Normalized,
    ushort3Normalized,
    ushort4Normalized,
    shortNormalized,
    short2Normalized,
    short3Normalized,
    short4Normalized,
    half,
    half2,
    half3,
    half4,
    float_,
    float2,
    float3,
    float4,
    int_,
    int2,
    int3,
    int4,
    uint,
    uint2,
    uint3,
    uint4,
    int1010102Normalized,
    uint1010102Normalized,
    uchar4NormalizedBGRA,
    floatRG11B10,
    floatRGB9E5
};

// The element of a buffer that an attribute reads.
enum class StepFunction : std::uint8_t {
    constant,                     // the first, always
    perVertex,                    // vertex functions: that of the vertex
    perInstance,                  // that of the instance, divided by the step rate
    perPatch,                     // patches: that of the patch
    perPatchControlPoint,         // patches: that of the control point
    threadPositionInGridX,        // kernels: that of the thread's column
    threadPositionInGridY,        // kernels: that of the thread's row
    threadPositionInGridXIndexed, // kernels: that of the index at the thread's column
    threadPositionInGridYIndexed  // kernels: that of the index at the thread's row
};

// The attribute of `[[attribute(n)]]` is element n of `VertexDescriptor::attributes`.
struct AttributeDescriptor {
    VertexFormat format = VertexFormat::invalid; // invalid: no such attribute
    std::uint32_t offset = 0;      // bytes from the start of the element, a multiple of 4
    std::uint32_t bufferIndex = 0; // [0, 30], one of the encoder's vertex or kernel buffers

    bool operator==(const AttributeDescriptor&) const = default;
};

// The layout of buffer n is element n of `VertexDescriptor::layouts`.
struct BufferLayoutDescriptor {
    std::uint32_t stride = 0; // bytes from element to element, a multiple of 4; 0: constant only
    StepFunction step = StepFunction::perVertex;
    std::uint32_t stepRate = 1; // perInstance: instances for each element, at least 1

    bool operator==(const BufferLayoutDescriptor&) const = default;
};

inline constexpr std::size_t mostAttributes = 31, mostBufferLayouts = 31;

struct VertexDescriptor {
    std::array<AttributeDescriptor, mostAttributes> attributes{};
    std::array<BufferLayoutDescriptor, mostBufferLayouts> layouts{};

    bool operator==(const VertexDescriptor&) const = default;
};

enum class IndexType : std::uint8_t { uint16, uint32 };

// Of a kernel with [[stage_in]].
struct StageInputDescriptor {
    VertexDescriptor buffers;
    IndexType indexType = IndexType::uint16;
    std::uint32_t indexBufferIndex = 0; // [0, 30]: the buffer of the indexed step functions

    bool operator==(const StageInputDescriptor&) const = default;
};

} // namespace tarnwick::gpu
