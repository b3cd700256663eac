// The three kinds of episode.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

enum class ShaderKind : std::uint8_t { fragment, particles, grid };

// "fragment", "particles", "grid".
std::string_view rawValue(ShaderKind kind);
// Accepts exactly those three.
std::optional<ShaderKind> shaderKindOf(std::string_view rawValue);

} // namespace tarnwick
