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
std::optional<ShaderKind> shaderKindNamed(std::string_view rawValue);

// The kind by which a source is labelled. Where it has both directives this is `particles`, while
// ShaderAssembler builds a grid episode of it.
ShaderKind shaderKindOf(std::string_view source);

} // namespace tarnwick
