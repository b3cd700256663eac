// The three kinds of episode.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

enum class ShaderKind : std::uint8_t { fragment, particles, grid };

// "fragment", "particles", "grid".
std::string_view rawValue(ShaderKind kind);
// Nothing for any other text.
std::optional<ShaderKind> shaderKindNamed(std::string_view rawValue);

// The kind that labels a source. A source with both directives is labelled `particles`, although
// ShaderAssembler makes a grid episode of it.
ShaderKind shaderKindOf(std::string_view source);

} // namespace tarnwick
