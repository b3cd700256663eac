// Functions of the module that sample as WebGPU's samplers cannot.
//
// Borders: WebGPU has no address modes that give a colour outside of the texture. A sampler that
// clamps to the edge gives the same inside. Outside and at the edge, the part of the filter that
// lies on texels, its coverage, is the weight of that colour against the border's; this is exact,
// because all texels beyond an edge have the edge's colour. The coverage depends on the size of the
// level, so these functions take one whole level, and their callers mix two.
//
// Texels: WGSL does not sample textures of integers, and compares depths at the first level only.
// There the texels that the filter takes are loaded one by one.
#pragma once

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Wgsl/Body.h"
#include "TarnwickMSL/Translation/Wgsl/TextureShapes.h"

namespace tarnwick::msl::wgsl {

struct SampleForm {
    const Shape* shape;  // of the view
    std::string texture; // its type
    std::string texel;   // the type of the result: "vec4f", "vec4i", "vec4u" or "f32"
    bool isDepth = false;
    bool compares = false; // takes a reference
    SamplerState state;
    std::string offset; // in texels, a vector of constants; "": none
};

// Whether the sampler gives a border's colour on an axis of the shape.
bool hasBorder(const SamplerState& state, const Shape& shape);

// Each gives the name of a function, which is declared with the first use.

// (image, sampler, at, [layer: u32,] level: f32 [, reference: f32]), with the filter `state.mag`.
std::string borderSample(Body& body, const SampleForm& form);
// (image, sampler, at [, layer: u32] [, reference: f32]): four texels of a component.
std::string borderGather(Body& body, const SampleForm& form, unsigned component);
// (image, at, [layer: u32,] level: f32 [, reference: f32]), with the filter `state.mag` of a
// comparison, and the nearest texel of integers.
std::string texelSample(Body& body, const SampleForm& form);

// The level of detail that belongs to two changes of the coordinates between neighbours, in texels.
std::string levelFunction(Body& body, unsigned lanes);
// (direction, change): the change of the place on a cube's face, whose side is 1.
std::string cubeChangeFunction(Body& body);
// (direction): the place on a cube's face, in [0, 1], and the number of the face.
std::string cubeFaceFunction(Body& body);

} // namespace tarnwick::msl::wgsl
