// A program of the corpus: its text, and what the comments at its head promise of it.
//
//   // @expects 3 2.5 | 4*1       what `out` holds afterwards, bars aside; 4*1 is 1 1 1 1. Lines
//   add up.
//   // @within 1e-3               how far a number may be off, of its size (or of 1); 1e-6 by
//   default
//   // @runs check 64 16          a kernel, its grid and its threadgroup (8x8x2 in three
//                                 dimensions), both 1 by default. Lines run in their order.
//                                 Four more numbers are the region of stage_in: x, y, width, height
//   // @draws triangle 3 2        primitives, vertices and instances, with the program's first
//   vertex
//                                 and first fragment function, on 8 x 8 pixels that were zero;
//                                 depth is compared with `less` against 1 where it says `depth`,
//                                 four samples are resolved where it says `samples`, all is drawn
//                                 twice where it says `twice`, and color(0) is added to the target
//                                 times the second source where it says `sources`
//   // @draws patches 2 3         patches and control points of each; the factors of the patches are
//                                 the first words of `scratch`, rounded up to whole numbers
//   // @target 1 uint             a target of its own for color(1): a component as of textures
//   // @texture 3 2d float 6x4 1 2     [[texture(3)]] of all functions: shape, component (or
//                                 `depth`), size, elements, levels (both 1 by default); its texels
//                                 are numbered (NumberedTextures.h)
//   // @sampler 0 linear repeat   [[sampler(0)]] of all functions: linear, mip_nearest,
//                                 mip_linear, repeat, mirrored_repeat, clamp_to_zero, less, greater
//   // @attribute 0 float3 16 1  [[attribute(0)]] of all functions: format, offset in bytes, buffer
//   // @layout 1 28 instance 2    buffer 1 of the attributes: stride in bytes, step function
//                                 (constant, vertex, instance, patch, control_point, x, y,
//                                 x_indexed, y_indexed; indices are the words of `scratch`), step
//                                 rate (1 by default)
//   // @constant tint 1 0.5 -2   the components of a function constant's value (true and false are
//                                 1 and 0). The program then runs twice: with the values of a
//                                 library's functions, and compiled with the values.
//   // @refused THE SENTENCE.   what the compiler says for a target without integers of 8, 16 and
//                                 64 bits and halves; by default the program gives the same there
//   // @pixel 2 5 : 1 0 0.5 1     a pixel from the upper left, red, green, blue and alpha
//   // @pixel 2 5 1 : 3 4 5 1     the same in the target of color(1)
//
// A program that promises numbers but says neither runs nor draws runs `check` once. All of them
// have
//   device float* out [[buffer(0)]]       256 numbers, NaN at first
//   constant float* in [[buffer(1)]]      256 numbers: 0 1 2 ...
//   device uint* scratch [[buffer(2)]]    1,024 words, zero at first
// of any type that suits them.
#pragma once

#include "TarnwickGPU/Commands.h"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::corpus {

struct Dispatch {
    std::string kernel;
    gpu::Size grid, threadgroup;
    std::optional<gpu::Region> stageIn;
};

struct DrawCall {
    gpu::PrimitiveType type = gpu::PrimitiveType::triangle;
    std::uint32_t vertices = 0, instances = 1;
    std::uint32_t controlPoints = 0; // of each of `vertices` patches; 0: no patches
    bool hasDepth = false, hasSamples = false, isTwice = false, hasSources = false;
};

struct BoundTexture {
    std::uint32_t index = 0;
    gpu::TextureDescriptor descriptor;
    std::string component;
};

struct ColorTarget {
    std::uint32_t index = 0; // of its colour attachment, in [1, 7]
    std::string component;
};

struct BoundSampler {
    std::uint32_t index = 0;
    gpu::SamplerDescriptor descriptor;
};

struct ConstantText {
    std::string name;
    std::vector<std::string> components;
};

struct Pixel {
    std::uint32_t x = 0, y = 0, target = 0;
    std::array<float, 4> color{};
};

struct Program {
    std::string name; // of the file, without .metal
    std::string source;
    std::vector<float> expected; // NaN: anything
    float tolerance = 1e-6f;
    std::vector<Dispatch> runs;
    std::vector<DrawCall> draws;
    std::vector<BoundTexture> textures;
    std::vector<BoundSampler> samplers;
    std::vector<ColorTarget> targets;
    std::vector<ConstantText> constants;
    std::vector<Pixel> pixels;
    std::string refusal; // without small and long types
    gpu::VertexDescriptor attributes;
};

// All of a folder by name. Throws std::runtime_error on a promise that it cannot read.
std::vector<Program> programsIn(const std::filesystem::path& folder);

} // namespace tarnwick::corpus
