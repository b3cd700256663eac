#include "TarnwickRender/Run/MeshTarget.h"

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/Program/TargetFormats.h"

namespace tarnwick {

std::unique_ptr<MeshTarget> MeshTarget::make(gpu::Device& device, std::int64_t width,
                                             std::int64_t height) {
    const auto size = PixelSize::of(width, height);
    if (!size)
        return nullptr;
    const gpu::TextureDescriptor one{.format = TargetFormats::pixelFormat,
                                     .width = size->width,
                                     .height = size->height,
                                     .usage = {.shaderRead = true, .renderTarget = true},
                                     .storage = gpu::StorageMode::private_};
    gpu::TextureDescriptor samples = one;
    samples.type = gpu::TextureType::type2DMultisample;
    samples.sampleCount = TargetFormats::meshSamples;
    samples.usage.shaderRead = false;
    gpu::TextureDescriptor depths = samples;
    depths.format = TargetFormats::depthFormat;
    auto made = std::make_unique<MeshTarget>();
    made->color = device.newTexture(samples);
    made->depth = device.newTexture(depths);
    made->resolved = device.newTexture(one);
    return made->color && made->depth && made->resolved ? std::move(made) : nullptr;
}

} // namespace tarnwick
