#include "TarnwickCore/Episode/ShaderKind.h"

#include "TarnwickCore/ShaderAssembler.h"

#include <array>
#include <cstddef>

namespace tarnwick {

static constexpr std::array<std::string_view, 3> kindNames{"fragment", "particles", "grid"};

std::string_view rawValue(ShaderKind kind) {
    return kindNames[static_cast<std::size_t>(kind)];
}

std::optional<ShaderKind> shaderKindNamed(std::string_view rawValue) {
    for (std::size_t index = 0; index < kindNames.size(); ++index)
        if (kindNames[index] == rawValue)
            return static_cast<ShaderKind>(index);
    return std::nullopt;
}

ShaderKind shaderKindOf(std::string_view source) {
    if (ShaderAssembler::particleCount(source) > 0)
        return ShaderKind::particles;
    return ShaderAssembler::gridSize(source) > 0 ? ShaderKind::grid : ShaderKind::fragment;
}

} // namespace tarnwick
