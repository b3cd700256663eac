#include "TarnwickCore/Live/LevelCodes.h"

#include "TarnwickCore/ShaderAssembler.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

static_assert(LevelCodes::bins == ShaderAssembler::spectrumBins);

constexpr std::size_t byteCount = 2 * 4 + LevelCodes::bins;
static_assert(byteCount % 3 == 0, "Base64 without padding");
constexpr std::size_t letterCount = byteCount / 3 * 4;

template <typename Code> Code codeOf(float value) {
    constexpr float greatest = std::numeric_limits<Code>::max();
    return static_cast<Code>(std::lround(greatest * (value > 0 ? std::min(value, 1.0f) : 0.0f)));
}

template <typename Code> float valueOf(Code code) {
    return static_cast<float>(code) / static_cast<float>(std::numeric_limits<Code>::max());
}

} // namespace

LevelCodes LevelCodes::of(const std::array<float, 4>& bands, std::span<const float> spectrum) {
    LevelCodes codes;
    std::ranges::transform(bands, codes.bands.begin(), codeOf<std::uint16_t>);
    std::ranges::transform(spectrum.first(std::min(spectrum.size(), bins)), codes.spectrum.begin(),
                           codeOf<std::uint8_t>);
    return codes;
}

std::array<float, 4> LevelCodes::bandValues() const {
    std::array<float, 4> values{};
    std::ranges::transform(bands, values.begin(), valueOf<std::uint16_t>);
    return values;
}

std::vector<float> LevelCodes::spectrumValues() const {
    std::vector<float> values(bins);
    std::ranges::transform(spectrum, values.begin(), valueOf<std::uint8_t>);
    return values;
}

std::string LevelCodes::encode() const {
    std::array<unsigned char, byteCount> bytes{};
    auto next = bytes.begin();
    for (const std::uint16_t band : bands) {
        *next++ = static_cast<unsigned char>(band >> 8);
        *next++ = static_cast<unsigned char>(band & 0xff);
    }
    std::ranges::copy(spectrum, next);
    std::array<unsigned char, letterCount + 1> letters{}; // with a zero at the end
    EVP_EncodeBlock(letters.data(), bytes.data(), byteCount);
    return {letters.begin(), letters.begin() + letterCount};
}

std::optional<LevelCodes> LevelCodes::decode(std::string_view text) {
    std::array<unsigned char, byteCount> bytes{};
    if (text.size() != letterCount || text.ends_with('='))
        return std::nullopt;
    const auto* letters = reinterpret_cast<const unsigned char*>(text.data());
    if (EVP_DecodeBlock(bytes.data(), letters, letterCount) != byteCount)
        return std::nullopt;
    LevelCodes codes;
    auto next = bytes.begin();
    for (std::uint16_t& band : codes.bands) {
        band = static_cast<std::uint16_t>(next[0] << 8 | next[1]);
        next += 2;
    }
    std::copy(next, bytes.end(), codes.spectrum.begin());
    return codes;
}

} // namespace tarnwick
