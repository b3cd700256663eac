// The capabilities that a SPIR-V module declares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tarnwick::msl {

// In the order of the module, which begins with them (SPIR-V 1.6, 2.4).
inline std::vector<std::uint32_t> capabilitiesOf(std::span<const std::uint32_t> words) {
    constexpr std::size_t header = 5;
    constexpr std::uint32_t declaration = 2u << 16 | 17; // OpCapability, two words
    std::vector<std::uint32_t> found;
    for (std::size_t at = header; at + 1 < words.size() && words[at] == declaration; at += 2)
        found.push_back(words[at + 1]);
    return found;
}

} // namespace tarnwick::msl
