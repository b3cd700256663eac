// A sampler as 64 bits, from the standard library's constexpr constructor to the GPU layer's
// VkSampler. The standard library (TarnwickMSL/Library) packs the same form.
// Metal Shading Language 3.1, 2.10.
#pragma once

#include <cstdint>

namespace tarnwick::msl {

enum class SamplerCoord : std::uint8_t { normalized, pixel };
enum class SamplerAddress : std::uint8_t {
    clampToZero,
    clampToEdge,
    repeat,
    mirroredRepeat,
    clampToBorder,
    mirrorClampToEdge // only of sampler arguments
};
enum class SamplerFilter : std::uint8_t { nearest, linear };
enum class SamplerMipFilter : std::uint8_t { none, nearest, linear };
enum class SamplerBorder : std::uint8_t { transparentBlack, opaqueBlack, opaqueWhite };
enum class SamplerCompare : std::uint8_t {
    never,
    less,
    lessEqual,
    greater,
    greaterEqual,
    equal,
    notEqual,
    always
};

//  bit   0     coord
//  bits  1..3  s address    4..6  t address    7..9  r address
//  bits 10..11 magnification filter   12..13 minification filter   14..15 mip filter
//  bits 16..17 border colour
//  bits 18..20 compare function
//  bits 21..24 maximum anisotropy - 1
//  bits 25..40 minimum LOD, bits 41..56 maximum LOD, each as 16-bit unsigned fixed point with 8
//              fraction bits (0xffff: no limit)
//  bit  57     the sampler compares; the writer sets it for such uses
//  bit  63     a sampler argument: the low 16 bits are its [[sampler(n)]] index, the rest is 0
struct SamplerState {
    SamplerCoord coord = SamplerCoord::normalized;
    SamplerAddress s = SamplerAddress::clampToEdge;
    SamplerAddress t = SamplerAddress::clampToEdge;
    SamplerAddress r = SamplerAddress::clampToEdge;
    SamplerFilter mag = SamplerFilter::nearest;
    SamplerFilter min = SamplerFilter::nearest;
    SamplerMipFilter mip = SamplerMipFilter::none;
    SamplerBorder border = SamplerBorder::transparentBlack;
    SamplerCompare compare = SamplerCompare::never;
    bool compares = false;
    std::uint32_t maxAnisotropy = 1; // [1, 16]
    float lodMin = 0;                // [0, 255]
    float lodMax = 1000;             // at and above 255: no limit

    bool operator==(const SamplerState&) const = default;
};

inline constexpr std::uint64_t samplerComparesBit = 1ull << 57;
inline constexpr std::uint64_t samplerArgumentBit = 1ull << 63;

constexpr std::uint64_t packSampler(const SamplerState& state) {
    auto field = [](auto value, unsigned at) { return static_cast<std::uint64_t>(value) << at; };
    auto lod = [](float level) {
        return level >= 255.0f ? 0xffffu
               : level > 0.0f  ? static_cast<std::uint32_t>(level * 256.0f + 0.5f)
                               : 0u;
    };
    return field(state.coord, 0) | field(state.s, 1) | field(state.t, 4) | field(state.r, 7) |
           field(state.mag, 10) | field(state.min, 12) | field(state.mip, 14) |
           field(state.border, 16) | field(state.compare, 18) |
           field(state.maxAnisotropy < 1    ? 0
                 : state.maxAnisotropy > 16 ? 15
                                            : state.maxAnisotropy - 1,
                 21) |
           field(lod(state.lodMin), 25) | field(lod(state.lodMax), 41) |
           (state.compares ? samplerComparesBit : 0);
}

constexpr SamplerState unpackSampler(std::uint64_t bits) {
    auto field = [bits](unsigned at, unsigned width) {
        return static_cast<std::uint32_t>((bits >> at) & ((1ull << width) - 1));
    };
    return {.coord = static_cast<SamplerCoord>(field(0, 1)),
            .s = static_cast<SamplerAddress>(field(1, 3)),
            .t = static_cast<SamplerAddress>(field(4, 3)),
            .r = static_cast<SamplerAddress>(field(7, 3)),
            .mag = static_cast<SamplerFilter>(field(10, 2)),
            .min = static_cast<SamplerFilter>(field(12, 2)),
            .mip = static_cast<SamplerMipFilter>(field(14, 2)),
            .border = static_cast<SamplerBorder>(field(16, 2)),
            .compare = static_cast<SamplerCompare>(field(18, 3)),
            .compares = (bits & samplerComparesBit) != 0,
            .maxAnisotropy = field(21, 4) + 1,
            .lodMin = static_cast<float>(field(25, 16)) / 256.0f,
            .lodMax =
                field(41, 16) == 0xffff ? 1000.0f : static_cast<float>(field(41, 16)) / 256.0f};
}

} // namespace tarnwick::msl
