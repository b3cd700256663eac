#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include "TarnwickGPU/Vulkan/FormatRows.h"

#include <array>

namespace tarnwick::gpu {

namespace {

struct FormatRow {
    PixelFormat format;
    VkFormat vulkan;
    std::size_t bytes;
    msl::TextureComponent component;
};
using Component = msl::TextureComponent;

// In the order of the enumeration.
// clang-format off
constexpr std::array<FormatRow, 46> rows{{
    {PixelFormat::invalid,          VK_FORMAT_UNDEFINED,                     0,  Component::none},
    {PixelFormat::r8Unorm,          VK_FORMAT_R8_UNORM,                      1,  Component::float_},
    {PixelFormat::rgba8Unorm,       VK_FORMAT_R8G8B8A8_UNORM,                4,  Component::float_},
    {PixelFormat::bgra8Unorm,       VK_FORMAT_B8G8R8A8_UNORM,                4,  Component::float_},
    {PixelFormat::r32Uint,          VK_FORMAT_R32_UINT,                      4,  Component::uint_},
    {PixelFormat::r32Float,         VK_FORMAT_R32_SFLOAT,                    4,  Component::float_},
    {PixelFormat::rgba16Float,      VK_FORMAT_R16G16B16A16_SFLOAT,           8,  Component::float_},
    {PixelFormat::rgba32Float,      VK_FORMAT_R32G32B32A32_SFLOAT,           16, Component::float_},
    {PixelFormat::depth32Float,     VK_FORMAT_D32_SFLOAT,                    4,  Component::float_},
    {PixelFormat::depth16Unorm,     VK_FORMAT_D16_UNORM,                     2,  Component::float_},
    {PixelFormat::r8Snorm,          VK_FORMAT_R8_SNORM,                      1,  Component::float_},
    {PixelFormat::r8Uint,           VK_FORMAT_R8_UINT,                       1,  Component::uint_},
    {PixelFormat::r8Sint,           VK_FORMAT_R8_SINT,                       1,  Component::int_},
    {PixelFormat::r16Unorm,         VK_FORMAT_R16_UNORM,                     2,  Component::float_},
    {PixelFormat::r16Snorm,         VK_FORMAT_R16_SNORM,                     2,  Component::float_},
    {PixelFormat::r16Uint,          VK_FORMAT_R16_UINT,                      2,  Component::uint_},
    {PixelFormat::r16Sint,          VK_FORMAT_R16_SINT,                      2,  Component::int_},
    {PixelFormat::r16Float,         VK_FORMAT_R16_SFLOAT,                    2,  Component::float_},
    {PixelFormat::rg8Unorm,         VK_FORMAT_R8G8_UNORM,                    2,  Component::float_},
    {PixelFormat::rg8Snorm,         VK_FORMAT_R8G8_SNORM,                    2,  Component::float_},
    {PixelFormat::rg8Uint,          VK_FORMAT_R8G8_UINT,                     2,  Component::uint_},
    {PixelFormat::rg8Sint,          VK_FORMAT_R8G8_SINT,                     2,  Component::int_},
    {PixelFormat::r32Sint,          VK_FORMAT_R32_SINT,                      4,  Component::int_},
    {PixelFormat::rg16Unorm,        VK_FORMAT_R16G16_UNORM,                  4,  Component::float_},
    {PixelFormat::rg16Snorm,        VK_FORMAT_R16G16_SNORM,                  4,  Component::float_},
    {PixelFormat::rg16Uint,         VK_FORMAT_R16G16_UINT,                   4,  Component::uint_},
    {PixelFormat::rg16Sint,         VK_FORMAT_R16G16_SINT,                   4,  Component::int_},
    {PixelFormat::rg16Float,        VK_FORMAT_R16G16_SFLOAT,                 4,  Component::float_},
    {PixelFormat::rgba8UnormSRGB,   VK_FORMAT_R8G8B8A8_SRGB,                 4,  Component::float_},
    {PixelFormat::bgra8UnormSRGB,   VK_FORMAT_B8G8R8A8_SRGB,                 4,  Component::float_},
    {PixelFormat::rgba8Snorm,       VK_FORMAT_R8G8B8A8_SNORM,                4,  Component::float_},
    {PixelFormat::rgba8Uint,        VK_FORMAT_R8G8B8A8_UINT,                 4,  Component::uint_},
    {PixelFormat::rgba8Sint,        VK_FORMAT_R8G8B8A8_SINT,                 4,  Component::int_},
    {PixelFormat::rgb10a2Unorm,     VK_FORMAT_A2B10G10R10_UNORM_PACK32,      4,  Component::float_},
    {PixelFormat::rgb10a2Uint,      VK_FORMAT_A2B10G10R10_UINT_PACK32,       4,  Component::uint_},
    {PixelFormat::rg11b10Float,     VK_FORMAT_B10G11R11_UFLOAT_PACK32,       4,  Component::float_},
    {PixelFormat::rgb9e5Float,      VK_FORMAT_E5B9G9R9_UFLOAT_PACK32,        4,  Component::float_},
    {PixelFormat::rg32Uint,         VK_FORMAT_R32G32_UINT,                   8,  Component::uint_},
    {PixelFormat::rg32Sint,         VK_FORMAT_R32G32_SINT,                   8,  Component::int_},
    {PixelFormat::rg32Float,        VK_FORMAT_R32G32_SFLOAT,                 8,  Component::float_},
    {PixelFormat::rgba16Unorm,      VK_FORMAT_R16G16B16A16_UNORM,            8,  Component::float_},
    {PixelFormat::rgba16Snorm,      VK_FORMAT_R16G16B16A16_SNORM,            8,  Component::float_},
    {PixelFormat::rgba16Uint,       VK_FORMAT_R16G16B16A16_UINT,             8,  Component::uint_},
    {PixelFormat::rgba16Sint,       VK_FORMAT_R16G16B16A16_SINT,             8,  Component::int_},
    {PixelFormat::rgba32Uint,       VK_FORMAT_R32G32B32A32_UINT,             16, Component::uint_},
    {PixelFormat::rgba32Sint,       VK_FORMAT_R32G32B32A32_SINT,             16, Component::int_},
}};
// clang-format on

static_assert(rowsAreInOrder(rows));

} // namespace

std::size_t bytesPerPixel(PixelFormat format) {
    return rows[static_cast<std::size_t>(format)].bytes;
}

bool isDepth(PixelFormat format) {
    return format == PixelFormat::depth32Float || format == PixelFormat::depth16Unorm;
}

std::uint32_t slices(const TextureDescriptor& descriptor) {
    const bool isCube =
        descriptor.type == TextureType::typeCube || descriptor.type == TextureType::typeCubeArray;
    return descriptor.arrayLength * (isCube ? 6 : 1);
}

msl::TextureComponent componentOf(PixelFormat format) {
    return rows[static_cast<std::size_t>(format)].component;
}

VkFormat vulkanFormat(PixelFormat format) {
    return rows[static_cast<std::size_t>(format)].vulkan;
}

} // namespace tarnwick::gpu
