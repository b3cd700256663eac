// The shapes of textures in WGSL.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/Wgsl/Expression.h"

namespace tarnwick::msl::wgsl {

struct Shape {
    TextureShape shape;
    std::string_view sampled, depth, storage; // types; "": WGSL has no such type
    unsigned axes;                            // of a size, without layers
    bool isArray = false;

    bool isCube() const { return shape == TextureShape::cube || shape == TextureShape::cubeArray; }
    // Lanes of coordinates without the layer: directions for cubes, and two in an array of textures
    // with one row.
    unsigned lanes() const { return isCube() ? 3 : shape == TextureShape::d1Array ? 2 : axes; }
};

// Throws TranslationError if WGSL lacks the shape.
const Shape& shapeOf(TextureShape wanted);

// The type of a vector of LANES, or of a number: "vec2f" and "f32" for 'f', "vec2u" and "u32".
std::string lanesOf(unsigned lanes, char kind);

// The type of a texture's components: "f32", "i32" or "u32".
std::string_view componentName(TextureComponent component);

// An array of textures of one dimension is one of textures with one row. Adds the other coordinate.
Expression inRow(const Shape& shape, const Expression& at, std::string_view lanes,
                 std::string_view other);

// The parts of coordinates that end with a layer.
Expression axesOf(const Expression& coordinates, unsigned axes);
Expression layerOf(const Expression& coordinates, unsigned axes);

} // namespace tarnwick::msl::wgsl
