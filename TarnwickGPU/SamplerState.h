// How a shader's [[sampler(n)]] argument samples: Metal's sampler descriptor and state object.
#pragma once

#include "TarnwickGPU/Pipeline.h"

#include <cstdint>
#include <memory>

namespace tarnwick::gpu {

struct SamplerParts; // the Vulkan side, in Resources/Samplers.h

enum class SamplerMinMagFilter : std::uint8_t { nearest, linear };
enum class SamplerMipFilter : std::uint8_t { notMipmapped, nearest, linear };
enum class SamplerAddressMode : std::uint8_t {
    clampToEdge,
    mirrorClampToEdge,
    repeat,
    mirrorRepeat,
    clampToZero,
    clampToBorderColor
};
enum class SamplerBorderColor : std::uint8_t { transparentBlack, opaqueBlack, opaqueWhite };

struct SamplerDescriptor {
    SamplerMinMagFilter minFilter = SamplerMinMagFilter::nearest;
    SamplerMinMagFilter magFilter = SamplerMinMagFilter::nearest;
    SamplerMipFilter mipFilter = SamplerMipFilter::notMipmapped; // notMipmapped: level 0 alone
    std::uint32_t maxAnisotropy = 1;                             // [1, 16]
    SamplerAddressMode sAddressMode = SamplerAddressMode::clampToEdge;
    SamplerAddressMode tAddressMode = SamplerAddressMode::clampToEdge;
    SamplerAddressMode rAddressMode = SamplerAddressMode::clampToEdge;
    SamplerBorderColor borderColor = SamplerBorderColor::transparentBlack;
    float lodMinClamp = 0;                                    // [0, 255], in steps of 1/256
    float lodMaxClamp = 1000;                                 // from 255 on: no limit
    CompareFunction compareFunction = CompareFunction::never; // of sample_compare

    bool operator==(const SamplerDescriptor&) const = default;
};

// Coordinates are normalized; only constexpr samplers of a program may use pixels.
class SamplerState {
  public:
    explicit SamplerState(std::unique_ptr<const SamplerParts> parts);
    ~SamplerState();
    const SamplerParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<const SamplerParts> parts_;
};

} // namespace tarnwick::gpu
