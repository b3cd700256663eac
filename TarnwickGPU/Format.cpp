#include "TarnwickGPU/Format.h"

#include "TarnwickGPU/VulkanFormat.h"

#include <array>

namespace tarnwick::gpu {

namespace {

struct FormatRow {
    PixelFormat format;
    VkFormat vulkan;
    std::size_t bytes;
};

// In the enumeration's order.
constexpr std::array<FormatRow, 9> rows{{
    {PixelFormat::invalid, VK_FORMAT_UNDEFINED, 0},
    {PixelFormat::r8Unorm, VK_FORMAT_R8_UNORM, 1},
    {PixelFormat::rgba8Unorm, VK_FORMAT_R8G8B8A8_UNORM, 4},
    {PixelFormat::bgra8Unorm, VK_FORMAT_B8G8R8A8_UNORM, 4},
    {PixelFormat::r32Uint, VK_FORMAT_R32_UINT, 4},
    {PixelFormat::r32Float, VK_FORMAT_R32_SFLOAT, 4},
    {PixelFormat::rgba16Float, VK_FORMAT_R16G16B16A16_SFLOAT, 8},
    {PixelFormat::rgba32Float, VK_FORMAT_R32G32B32A32_SFLOAT, 16},
    {PixelFormat::depth32Float, VK_FORMAT_D32_SFLOAT, 4},
}};

constexpr bool rowsAreInOrder() {
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (static_cast<std::size_t>(rows[row].format) != row)
            return false;
    return true;
}
static_assert(rowsAreInOrder());

} // namespace

std::size_t bytesPerPixel(PixelFormat format) {
    return rows[static_cast<std::size_t>(format)].bytes;
}

VkFormat vulkanFormat(PixelFormat format) {
    return rows[static_cast<std::size_t>(format)].vulkan;
}

} // namespace tarnwick::gpu
