#include "TarnwickGPU/SamplerState.h"

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickMSL/SamplerBits.h"

#include <array>

namespace tarnwick::gpu {

namespace {

// Each table is in the order of its enumeration.
constexpr std::array addresses{
    msl::SamplerAddress::clampToEdge, msl::SamplerAddress::mirrorClampToEdge,
    msl::SamplerAddress::repeat,      msl::SamplerAddress::mirroredRepeat,
    msl::SamplerAddress::clampToZero, msl::SamplerAddress::clampToBorder};
constexpr std::array compares{msl::SamplerCompare::never,        msl::SamplerCompare::less,
                              msl::SamplerCompare::equal,        msl::SamplerCompare::lessEqual,
                              msl::SamplerCompare::greater,      msl::SamplerCompare::notEqual,
                              msl::SamplerCompare::greaterEqual, msl::SamplerCompare::always};

msl::SamplerAddress address(SamplerAddressMode mode) {
    return addresses[static_cast<std::size_t>(mode)];
}

// The enumerations of filters and borders have the values of msl's.
msl::SamplerState stateOf(const SamplerDescriptor& descriptor) {
    return {.s = address(descriptor.sAddressMode),
            .t = address(descriptor.tAddressMode),
            .r = address(descriptor.rAddressMode),
            .mag = static_cast<msl::SamplerFilter>(descriptor.magFilter),
            .min = static_cast<msl::SamplerFilter>(descriptor.minFilter),
            .mip = static_cast<msl::SamplerMipFilter>(descriptor.mipFilter),
            .border = static_cast<msl::SamplerBorder>(descriptor.borderColor),
            .compare = compares[static_cast<std::size_t>(descriptor.compareFunction)],
            .maxAnisotropy = descriptor.maxAnisotropy,
            .lodMin = descriptor.lodMinClamp,
            .lodMax = descriptor.lodMaxClamp};
}

} // namespace

SamplerState::SamplerState(std::unique_ptr<const SamplerParts> parts) : parts_(std::move(parts)) {}
SamplerState::~SamplerState() = default;

std::unique_ptr<SamplerState> Device::newSamplerState(const SamplerDescriptor& descriptor) {
    msl::SamplerState state = stateOf(descriptor);
    const std::uint64_t bits = msl::packSampler(state);
    const VkSampler plain = state_->samplers.sampler(bits);
    state.compares = true;
    const VkSampler comparing = state_->samplers.sampler(msl::packSampler(state));
    if (!plain || !comparing)
        return nullptr;
    return std::make_unique<SamplerState>(std::make_unique<const SamplerParts>(
        SamplerParts{state_, plain, comparing, bits | msl::samplerArgumentBit}));
}

} // namespace tarnwick::gpu
