#include "TarnwickMSL/Translation/FrontEnd/Missing.h"

#include <algorithm>
#include <array>

namespace tarnwick::msl {

// clang-format off
// Sorted. Metal Shading Language 3.1: 5.1.6 and 5.1.9 (intersection and tile functions), 5.2.3 and
// 5.6 (imageblocks).
static constexpr std::array<std::string_view, 4> attributes{
    "alias_implicit_imageblock", "imageblock_data", "intersection", "tile",
};

// Sorted. 2.11 (imageblocks), 2.15 to 2.17, 6.13, 6.16 (commands), 6.17 and 6.18 (rays).
static constexpr std::array<std::string_view, 13> names{
    "command_buffer", "compute_command", "imageblock",
    "imageblock_layout_explicit", "imageblock_layout_implicit", "imageblock_slice",
    "intersection_function_table",
    "rasterization_rate_map_data", "rasterization_rate_map_decoder", "ray_data",
    "render_command",
    "threadgroup_imageblock", "visible_function_table",
};
// clang-format on
static_assert(std::ranges::is_sorted(attributes) && std::ranges::is_sorted(names));

bool isMissingAttribute(std::string_view word) {
    return std::ranges::binary_search(attributes, word);
}

bool isMissingName(std::string_view name) {
    return std::ranges::binary_search(names, name);
}

// Words of tile functions and imageblocks. Fragment functions read their own colours as arguments.
static constexpr std::array tileWords{
    std::string_view("'alias_implicit_imageblock'"),
    std::string_view("'imageblock'"),
    std::string_view("'imageblock_data'"),
    std::string_view("'imageblock_layout_explicit'"),
    std::string_view("'imageblock_layout_implicit'"),
    std::string_view("'imageblock_slice'"),
    std::string_view("'threadgroup_imageblock'"),
    std::string_view("'tile'"),
};

std::string missing(std::string_view what) {
    std::string message = std::string(what) + " is not supported on this platform";
    if (what.ends_with("'visible_function_table'"))
        message +=
            ": the host fills the table at run time, and Vulkan has no calls of functions of "
            "other modules";
    if (std::ranges::any_of(tileWords, [&](std::string_view word) { return what.ends_with(word); }))
        message += ": Vulkan has no memory of tiles that kernels and render passes share";
    return message;
}

} // namespace tarnwick::msl
