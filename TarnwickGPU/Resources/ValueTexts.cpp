#include "TarnwickGPU/Resources/ValueTexts.h"

#include <cstdint>

namespace tarnwick::gpu {

namespace {

std::string sizeText(std::uint32_t width, std::uint32_t height, std::uint32_t depth) {
    return std::to_string(width) + "x" + std::to_string(height) +
           (depth > 1 ? "x" + std::to_string(depth) : "");
}

} // namespace

std::string valueText(const Region& region) {
    const bool isFlat = region.z == 0 && region.depth <= 1;
    return std::to_string(region.x) + "," + std::to_string(region.y) +
           (isFlat ? "" : "," + std::to_string(region.z)) + " " +
           sizeText(region.width, region.height, region.depth);
}

std::string valueText(const TextureDescriptor& descriptor) {
    std::string text = sizeText(descriptor.width, descriptor.height, descriptor.depth);
    if (descriptor.mipLevels > 1)
        text += " of " + std::to_string(descriptor.mipLevels) + " levels";
    if (slices(descriptor) > 1)
        text += " of " + std::to_string(slices(descriptor)) + " slices";
    return text;
}

} // namespace tarnwick::gpu
