// The words for stages, types and resources of compiled programs, in listings and documents.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// The attribute of an argument in the source, and the kind of its binding.
struct ResourceName {
    std::string_view attribute, kind;
};

// The name of a value of an enumeration, in the order of the enumeration.
template <class Enumeration, std::size_t size>
constexpr std::string_view nameIn(const std::array<std::string_view, size>& names,
                                  Enumeration value) {
    return names[static_cast<std::size_t>(value)];
}

inline constexpr std::array<std::string_view, 5> stageNames{"vertex", "fragment", "kernel",
                                                            "object", "mesh"};
inline constexpr std::array<std::string_view, 11> scalarNames{
    "bool", "char", "uchar", "short", "ushort", "int", "uint", "half", "float", "long", "ulong"};
static_assert(scalarNames.size() == static_cast<std::size_t>(msl::Scalar::uint64) + 1);

inline constexpr std::array<ResourceName, 12> resourceNames{{
    {"buffer", "uniform buffer"},
    {"buffer", "storage buffer"},
    {"texture", "sampled texture"},
    {"texture", "storage texture"},
    {"sampler", "sampler"},
    {"", "constexpr sampler"},
    {"color", "colour so far"},
    {"buffer", "acceleration structure"},
    {"", "loop report"},
    {"", "addresses of buffers"},
    {"", "grid size"},
    {"", "viewport size"},
}};
static_assert(resourceNames.size() ==
              static_cast<std::size_t>(msl::ResourceKind::viewportSize) + 1);

// "float3"
inline std::string typeName(msl::Scalar scalar, std::uint32_t width) {
    std::string name(nameIn(scalarNames, scalar));
    return width > 1 ? name + std::to_string(width) : name;
}

} // namespace tarnwick
