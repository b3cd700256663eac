#include "TarnwickRender/Sound/SpectrumTexture.h"

#include "TarnwickBase/PixelSize.h"

#include <algorithm>

namespace tarnwick {

std::unique_ptr<SpectrumTexture> SpectrumTexture::make(gpu::Device& device, std::int64_t bins) {
    const auto size = PixelSize::of(bins, 1);
    if (!size)
        return nullptr;
    auto made = std::make_unique<SpectrumTexture>();
    made->texture_ = device.newTexture(
        {.format = gpu::PixelFormat::r32Float, .width = size->width, .height = size->height});
    return made->texture_ ? std::move(made) : nullptr;
}

void SpectrumTexture::update(std::span<const float> values) {
    const auto count = std::min<std::size_t>(values.size(), texture_->width());
    if (count > 0)
        texture_->replace({.width = static_cast<std::uint32_t>(count), .height = 1}, 0,
                          values.data(), count * sizeof(float));
}

} // namespace tarnwick
