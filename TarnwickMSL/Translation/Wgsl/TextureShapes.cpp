#include "TarnwickMSL/Translation/Wgsl/TextureShapes.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <array>

namespace tarnwick::msl::wgsl {

// clang-format off
static constexpr std::array shapes{
    Shape{TextureShape::d1,            "texture_1d",              "",                              "texture_storage_1d",       1},
    Shape{TextureShape::d1Array,       "texture_2d_array",        "",                              "texture_storage_2d_array", 1, true},
    Shape{TextureShape::d2,            "texture_2d",              "texture_depth_2d",              "texture_storage_2d",       2},
    Shape{TextureShape::d2Array,       "texture_2d_array",        "texture_depth_2d_array",        "texture_storage_2d_array", 2, true},
    Shape{TextureShape::d2Multisample, "texture_multisampled_2d", "texture_depth_multisampled_2d", "",                         2},
    Shape{TextureShape::d3,            "texture_3d",              "",                              "texture_storage_3d",       3},
    Shape{TextureShape::cube,          "texture_cube",            "texture_depth_cube",            "",                         2},
    Shape{TextureShape::cubeArray,     "texture_cube_array",      "texture_depth_cube_array",      "",                         2, true},
};
// clang-format on

const Shape& shapeOf(TextureShape wanted) {
    for (const Shape& shape : shapes)
        if (shape.shape == wanted)
            return shape;
    throw TranslationError(
        std::string("WGSL has no ") +
        (wanted == TextureShape::buffer ? "texture buffers." : "arrays of multisampled textures."));
}

std::string lanesOf(unsigned lanes, char kind) {
    return lanes == 1 ? std::string(1, kind) + "32" : "vec" + std::to_string(lanes) + kind;
}

std::string_view componentName(TextureComponent component) {
    return component == TextureComponent::int_    ? "i32"
           : component == TextureComponent::uint_ ? "u32"
                                                  : "f32";
}

Expression inRow(const Shape& shape, const Expression& at, std::string_view lanes,
                 std::string_view other) {
    return shape.shape == TextureShape::d1Array ? call(lanes, {at, {.text = std::string(other)}})
                                                : at;
}

Expression axesOf(const Expression& coordinates, unsigned axes) {
    return member(coordinates, std::string_view("xyzw").substr(0, axes));
}

Expression layerOf(const Expression& coordinates, unsigned axes) {
    return member(coordinates, std::string_view("xyzw").substr(axes, 1));
}

} // namespace tarnwick::msl::wgsl
