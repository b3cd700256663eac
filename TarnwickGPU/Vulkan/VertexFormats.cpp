#include "TarnwickGPU/Vulkan/VertexFormats.h"

#include "TarnwickGPU/Vulkan/FormatRows.h"

#include <array>

namespace tarnwick::gpu {

namespace {

using Format = VertexFormat;
using Kind = NumberKind;

// In the order of the enumeration.
// clang-format off
constexpr std::array<VertexFormatRow, 54> rows{{
    {Format::invalid,                "invalid",               VK_FORMAT_UNDEFINED,                    Kind::float_,  1, 32},
    {Format::uchar,                  "uchar",                 VK_FORMAT_R8_UINT,                      Kind::uint,    1,  8},
    {Format::uchar2,                 "uchar2",                VK_FORMAT_R8G8_UINT,                    Kind::uint,    2,  8},
    {Format::uchar3,                 "uchar3",                VK_FORMAT_R8G8B8_UINT,                  Kind::uint,    3,  8},
    {Format::uchar4,                 "uchar4",                VK_FORMAT_R8G8B8A8_UINT,                Kind::uint,    4,  8},
    {Format::char_,                  "char",                  VK_FORMAT_R8_SINT,                      Kind::sint,    1,  8},
    {Format::char2,                  "char2",                 VK_FORMAT_R8G8_SINT,                    Kind::sint,    2,  8},
    {Format::char3,                  "char3",                 VK_FORMAT_R8G8B8_SINT,                  Kind::sint,    3,  8},
    {Format::char4,                  "char4",                 VK_FORMAT_R8G8B8A8_SINT,                Kind::sint,    4,  8},
    {Format::ucharNormalized,        "ucharNormalized",       VK_FORMAT_R8_UNORM,                     Kind::unorm,   1,  8},
    {Format::uchar2Normalized,       "uchar2Normalized",      VK_FORMAT_R8G8_UNORM,                   Kind::unorm,   2,  8},
    {Format::uchar3Normalized,       "uchar3Normalized",      VK_FORMAT_R8G8B8_UNORM,                 Kind::unorm,   3,  8},
    {Format::uchar4Normalized,       "uchar4Normalized",      VK_FORMAT_R8G8B8A8_UNORM,               Kind::unorm,   4,  8},
    {Format::charNormalized,         "charNormalized",        VK_FORMAT_R8_SNORM,                     Kind::snorm,   1,  8},
    {Format::char2Normalized,        "char2Normalized",       VK_FORMAT_R8G8_SNORM,                   Kind::snorm,   2,  8},
    {Format::char3Normalized,        "char3Normalized",       VK_FORMAT_R8G8B8_SNORM,                 Kind::snorm,   3,  8},
    {Format::char4Normalized,        "char4Normalized",       VK_FORMAT_R8G8B8A8_SNORM,               Kind::snorm,   4,  8},
    {Format::ushort,                 "ushort",                VK_FORMAT_R16_UINT,                     Kind::uint,    1, 16},
    {Format::ushort2,                "ushort2",               VK_FORMAT_R16G16_UINT,                  Kind::uint,    2, 16},
    {Format::ushort3,                "ushort3",               VK_FORMAT_R16G16B16_UINT,               Kind::uint,    3, 16},
    {Format::ushort4,                "ushort4",               VK_FORMAT_R16G16B16A16_UINT,            Kind::uint,    4, 16},
    {Format::short_,                 "short",                 VK_FORMAT_R16_SINT,                     Kind::sint,    1, 16},
    {Format::short2,                 "short2",                VK_FORMAT_R16G16_SINT,                  Kind::sint,    2, 16},
    {Format::short3,                 "short3",                VK_FORMAT_R16G16B16_SINT,               Kind::sint,    3, 16},
    {Format::short4,                 "short4",                VK_FORMAT_R16G16B16A16_SINT,            Kind::sint,    4, 16},
    {Format::ushortNormalized,       "ushortNormalized",      VK_FORMAT_R16_UNORM,                    Kind::unorm,   1, 16},
    {Format::ushort2Normalized,      "ushort2Normalized",     VK_FORMAT_R16G16_UNORM,                 Kind::unorm,   2, 16},
    {Format::ushort3Normalized,      "ushort3Normalized",     VK_FORMAT_R16G16B16_UNORM,              Kind::unorm,   3, 16},
    {Format::ushort4Normalized,      "ushort4Normalized",     VK_FORMAT_R16G16B16A16_UNORM,           Kind::unorm,   4, 16},
    {Format::shortNormalized,        "shortNormalized",       VK_FORMAT_R16_SNORM,                    Kind::snorm,   1, 16},
    {Format::short2Normalized,       "short2Normalized",      VK_FORMAT_R16G16_SNORM,                 Kind::snorm,   2, 16},
    {Format::short3Normalized,       "short3Normalized",      VK_FORMAT_R16G16B16_SNORM,              Kind::snorm,   3, 16},
    {Format::short4Normalized,       "short4Normalized",      VK_FORMAT_R16G16B16A16_SNORM,           Kind::snorm,   4, 16},
    {Format::half,                   "half",                  VK_FORMAT_R16_SFLOAT,                   Kind::float_,  1, 16},
    {Format::half2,                  "half2",                 VK_FORMAT_R16G16_SFLOAT,                Kind::float_,  2, 16},
    {Format::half3,                  "half3",                 VK_FORMAT_R16G16B16_SFLOAT,             Kind::float_,  3, 16},
    {Format::half4,                  "half4",                 VK_FORMAT_R16G16B16A16_SFLOAT,          Kind::float_,  4, 16},
    {Format::float_,                 "float",                 VK_FORMAT_R32_SFLOAT,                   Kind::float_,  1, 32},
    {Format::float2,                 "float2",                VK_FORMAT_R32G32_SFLOAT,                Kind::float_,  2, 32},
    {Format::float3,                 "float3",                VK_FORMAT_R32G32B32_SFLOAT,             Kind::float_,  3, 32},
    {Format::float4,                 "float4",                VK_FORMAT_R32G32B32A32_SFLOAT,          Kind::float_,  4, 32},
    {Format::int_,                   "int",                   VK_FORMAT_R32_SINT,                     Kind::sint,    1, 32},
    {Format::int2,                   "int2",                  VK_FORMAT_R32G32_SINT,                  Kind::sint,    2, 32},
    {Format::int3,                   "int3",                  VK_FORMAT_R32G32B32_SINT,               Kind::sint,    3, 32},
    {Format::int4,                   "int4",                  VK_FORMAT_R32G32B32A32_SINT,            Kind::sint,    4, 32},
    {Format::uint,                   "uint",                  VK_FORMAT_R32_UINT,                     Kind::uint,    1, 32},
    {Format::uint2,                  "uint2",                 VK_FORMAT_R32G32_UINT,                  Kind::uint,    2, 32},
    {Format::uint3,                  "uint3",                 VK_FORMAT_R32G32B32_UINT,               Kind::uint,    3, 32},
    {Format::uint4,                  "uint4",                 VK_FORMAT_R32G32B32A32_UINT,            Kind::uint,    4, 32},
    {Format::int1010102Normalized,   "int1010102Normalized",  VK_FORMAT_A2B10G10R10_SNORM_PACK32,     Kind::snorm,   4, 10, Packing::ten},
    {Format::uint1010102Normalized,  "uint1010102Normalized", VK_FORMAT_A2B10G10R10_UNORM_PACK32,     Kind::unorm,   4, 10, Packing::ten},
    {Format::uchar4NormalizedBGRA,   "uchar4NormalizedBGRA",  VK_FORMAT_B8G8R8A8_UNORM,               Kind::unorm,   4,  8, Packing::bgra},
    {Format::floatRG11B10,           "floatRG11B10",          VK_FORMAT_B10G11R11_UFLOAT_PACK32,      Kind::float_,  3, 11, Packing::eleven},
    {Format::floatRGB9E5,            "floatRGB9E5",           VK_FORMAT_E5B9G9R9_UFLOAT_PACK32,       Kind::float_,  3,  9, Packing::sharedBits},
}};
// clang-format on

static_assert(rowsAreInOrder(rows));

} // namespace

const VertexFormatRow& vertexFormat(VertexFormat format) {
    return rows[static_cast<std::size_t>(format)];
}

} // namespace tarnwick::gpu
