#include "TarnwickGPU/Resources/Samplers.h"

#include "TarnwickMSL/SamplerBits.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

// Each table is in the order of its enumeration.
constexpr std::array addresses{
    VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_BORDER, // clampToZero, with the border transparent black
    VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE,       VK_SAMPLER_ADDRESS_MODE_REPEAT,
    VK_SAMPLER_ADDRESS_MODE_MIRRORED_REPEAT,     VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_BORDER,
    VK_SAMPLER_ADDRESS_MODE_MIRROR_CLAMP_TO_EDGE};
constexpr std::array borders{VK_BORDER_COLOR_FLOAT_TRANSPARENT_BLACK,
                             VK_BORDER_COLOR_FLOAT_OPAQUE_BLACK,
                             VK_BORDER_COLOR_FLOAT_OPAQUE_WHITE};
constexpr std::array compares{VK_COMPARE_OP_NEVER,
                              VK_COMPARE_OP_LESS,
                              VK_COMPARE_OP_LESS_OR_EQUAL,
                              VK_COMPARE_OP_GREATER,
                              VK_COMPARE_OP_GREATER_OR_EQUAL,
                              VK_COMPARE_OP_EQUAL,
                              VK_COMPARE_OP_NOT_EQUAL,
                              VK_COMPARE_OP_ALWAYS};

template <typename Value, std::size_t count, typename Index>
Value entry(const std::array<Value, count>& table, Index index) {
    return table[std::min(static_cast<std::size_t>(index), count - 1)];
}

VkFilter filter(msl::SamplerFilter filter) {
    return filter == msl::SamplerFilter::linear ? VK_FILTER_LINEAR : VK_FILTER_NEAREST;
}

VkSamplerCreateInfo samplerInfo(const msl::SamplerState& state, const DeviceRecord& device) {
    const bool clampsToZero = state.s == msl::SamplerAddress::clampToZero ||
                              state.t == msl::SamplerAddress::clampToZero ||
                              state.r == msl::SamplerAddress::clampToZero;
    const bool hasMips = state.mip != msl::SamplerMipFilter::none;
    // The compiler of the packaged CPU driver crashes on anisotropic samplers in kernels, which
    // have no derivatives.
    const bool isAnisotropic = device.features.anisotropy && !device.info.isCPU;
    const float anisotropy =
        std::min(static_cast<float>(state.maxAnisotropy), device.limits.maxSamplerAnisotropy);
    const float lodMin = std::max(state.lodMin, 0.0f);
    return {.sType = VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO,
            .magFilter = filter(state.mag),
            .minFilter = filter(state.min),
            .mipmapMode = state.mip == msl::SamplerMipFilter::linear
                              ? VK_SAMPLER_MIPMAP_MODE_LINEAR
                              : VK_SAMPLER_MIPMAP_MODE_NEAREST,
            .addressModeU = entry(addresses, state.s),
            .addressModeV = entry(addresses, state.t),
            .addressModeW = entry(addresses, state.r),
            .anisotropyEnable = isAnisotropic && anisotropy > 1,
            .maxAnisotropy = anisotropy,
            .compareEnable = state.compares,
            .compareOp = entry(compares, state.compare),
            // Without mips only level 0 is read. With 0.25 the minifying filter is still used
            // (Vulkan 1.3, the note in 13).
            .minLod = hasMips ? lodMin : 0.0f,
            .maxLod = hasMips ? std::max(state.lodMax, lodMin) : 0.25f,
            .borderColor = clampsToZero ? VK_BORDER_COLOR_FLOAT_TRANSPARENT_BLACK
                                        : entry(borders, state.border)};
}

} // namespace

VkSampler Samplers::sampler(std::uint64_t bits) {
    std::lock_guard lock(mutex_);
    if (auto found = samplers_.find(bits); found != samplers_.end())
        return found->second;
    // A sampler argument that is not bound samples as a default constexpr sampler does.
    msl::SamplerState state = msl::unpackSampler(bits);
    if (bits & msl::samplerArgumentBit)
        state = {.compares = state.compares};
    if (!device_.features.mirrorClamp)
        for (msl::SamplerAddress* address : {&state.s, &state.t, &state.r})
            if (*address == msl::SamplerAddress::mirrorClampToEdge)
                return VK_NULL_HANDLE;
    const VkSamplerCreateInfo info = samplerInfo(state, device_);
    VkSampler made = VK_NULL_HANDLE;
    if (vkCreateSampler(device_.handle, &info, nullptr, &made) == VK_SUCCESS)
        samplers_.emplace(bits, made);
    return made;
}

void Samplers::stop() {
    for (const auto& [bits, sampler] : samplers_)
        vkDestroySampler(device_.handle, sampler, nullptr);
    samplers_.clear();
}

} // namespace tarnwick::gpu
