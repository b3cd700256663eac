#include "tests/TarnwickMSL/NumberedTextures.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::tests {

namespace {

using gpu::TextureType;

std::uint32_t extent(std::uint32_t first, std::uint32_t level) {
    return std::max(first >> level, 1u);
}

std::uint32_t planes(const gpu::TextureDescriptor& texture, std::uint32_t level) {
    return texture.type == TextureType::type3D ? extent(texture.depth, level) : slices(texture);
}

void put(std::byte* to, const Component& component, int number) {
    const auto real = static_cast<float>(number);
    const auto half = static_cast<_Float16>(real);
    if (!component.isReal)
        std::memcpy(to, &number, component.bytes);
    else if (component.bytes == 4)
        std::memcpy(to, &real, 4);
    else
        std::memcpy(to, &half, 2);
}

} // namespace

int numberOf(const Spot& spot) {
    return static_cast<int>(1 + spot.x + 10 * spot.y + 100 * spot.slice + 2000 * spot.level);
}

bool isInside(const gpu::TextureDescriptor& texture, const Spot& spot) {
    return spot.level < texture.mipLevels && spot.x < extent(texture.width, spot.level) &&
           spot.y < extent(texture.height, spot.level) && spot.slice < planes(texture, spot.level);
}

std::vector<Spot> spots(const gpu::TextureDescriptor& texture, std::uint32_t beyond) {
    const bool isLine =
        texture.type == TextureType::type1D || texture.type == TextureType::type1DArray;
    const bool isFlat = texture.type == TextureType::type1D || texture.type == TextureType::type2D;
    const std::uint32_t below = isLine ? 0 : beyond, behind = isFlat ? 0 : beyond;
    std::vector<Spot> all;
    for (std::uint32_t level = 0; level < texture.mipLevels; ++level)
        for (std::uint32_t slice = 0; slice < planes(texture, level) + behind; ++slice)
            for (std::uint32_t y = 0; y < extent(texture.height, level) + below; ++y)
                for (std::uint32_t x = 0; x < extent(texture.width, level) + beyond; ++x)
                    all.push_back({x, y, slice, level});
    return all;
}

const Component& componentOf(const std::string& name) {
    const auto* found = std::find_if(components.begin(), components.end(),
                                     [&](const Component& one) { return name == one.name; });
    return found == components.end() ? components.front() : *found;
}

std::unique_ptr<gpu::Texture> numberedTexture(gpu::Device& device,
                                              gpu::TextureDescriptor descriptor,
                                              const Component& component) {
    const bool isDepth = component.format == gpu::PixelFormat::depth32Float;
    descriptor.format = component.format;
    descriptor.usage = {.shaderRead = true, .shaderWrite = !isDepth};
    auto texture = device.newTexture(descriptor);
    const bool isSolid = descriptor.type == TextureType::type3D;
    for (const Spot& spot : texture ? spots(descriptor) : std::vector<Spot>()) {
        const int number = numberOf(spot);
        const float depth = static_cast<float>(number) / 8192;
        std::array<std::byte, 16> pixel{};
        for (int lane = 0; lane < 4 && !isDepth; ++lane)
            put(&pixel[static_cast<std::size_t>(lane) * component.bytes], component, number + lane);
        if (isDepth)
            std::memcpy(pixel.data(), &depth, sizeof depth);
        texture->replace({spot.x, spot.y, 1, 1, isSolid ? spot.slice : 0}, spot.level,
                         isSolid ? 0 : spot.slice, pixel.data(), pixel.size(), pixel.size());
    }
    return texture;
}

} // namespace tarnwick::tests
