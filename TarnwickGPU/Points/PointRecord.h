// The push constants of the layer's code around the functions of points, in every form.
#pragma once

#include "TarnwickGPU/Points/PointBody.h"

#include <array>
#include <cstdint>

namespace tarnwick::gpu {

using Pair = std::array<float, 2>; // x and y

// Pixels are counted from the upper left of the target.
struct PointRecord {
    Pair half{};      // pixels of 1 in clip space; y is negative
    Pair centre{};    // the pixel of 0 in clip space
    Pair reach{};     // the maximum distance of a visible point's centre from 0 in clip space
    Pair scale{1, 1}; // of the position, for a viewport with a margin
    // Draws points of sizes in (sizes[0], sizes[1]]. A kernel adds those up to sizes[0] itself and
    // enables quads for those above sizes[1].
    Pair sizes{};
    Pair depth{};    // of the viewport: znear and zfar - znear
    Pair from{};     // the first pixel of the scissor
    Pair to{};       // its end, exclusive
    Pair rounding{}; // sums are integers: colours times rounding[0]; rounding[1] is its inverse
    std::uint32_t firstVertex = 0;
    std::uint32_t count = 0;     // of points
    std::uint32_t rowPixels = 0; // of the sums' rows
};

// In the order of the record.
enum class PointMember : std::uint32_t {
    half,
    centre,
    reach,
    scale,
    sizes,
    depth,
    from,
    to,
    rounding,
    firstVertex,
    count,
    rowPixels
};

// The record as a variable of a module, and its values.
class PointRecordVariable {
  public:
    explicit PointRecordVariable(spirv::Module& code);
    Id pair(PointBody& body, PointMember member) const;
    Id word(PointBody& body, PointMember member) const;

  private:
    Id variable_;
};

} // namespace tarnwick::gpu
