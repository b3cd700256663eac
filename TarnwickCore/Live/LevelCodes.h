// The levels and the spectrum of a sound in few bytes, as performances keep them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct LevelCodes {
    static constexpr std::size_t bins = 256; // of the spectrum

    std::array<std::uint16_t, 4> bands{};      // low, mid, high, level: 65535 is 1
    std::array<std::uint8_t, bins> spectrum{}; // 255 is 1

    bool operator==(const LevelCodes&) const = default;

    // The nearest codes of an AudioAnalyzer's values. Bins without a value are 0, values without a
    // bin are ignored.
    static LevelCodes of(const std::array<float, 4>& bands, std::span<const float> spectrum);
    std::array<float, 4> bandValues() const;   // in [0, 1]
    std::vector<float> spectrumValues() const; // `bins` values in [0, 1]

    // Base64 (RFC 4648, 4) of the bands, the higher byte first, and of the spectrum.
    std::string encode() const;
    // Absent for any other text.
    static std::optional<LevelCodes> decode(std::string_view text);
};

} // namespace tarnwick
