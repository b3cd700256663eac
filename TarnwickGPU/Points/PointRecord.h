// What the layer tells its own code around a point's functions: the push constants of every form.
#pragma once

#include "TarnwickGPU/Points/PointBody.h"

#include <array>
#include <cstdint>

namespace tarnwick::gpu {

using Pair = std::array<float, 2>; // x and y

// Pixels are counted from the target's upper left.
struct PointRecord {
    Pair half{};   // pixels that 1 in clip space is, to the right and (negative) down
    Pair centre{}; // where clip space's 0 lies, in pixels
    Pair reach{};  // how far from 0 in clip space a centre may lie and still show
    Pair scale{1, 1};
    Pair sizes{};    // draws points of sizes above the first, up to the second; a kernel adds those
                     // up to the first itself, and notes those above the second as quads
    Pair depth{};    // of the viewport: at the near plane, and from there to the far plane
    Pair from{};     // first pixel that may be drawn to
    Pair to{};       // and the end of them
    Pair rounding{}; // sums are whole numbers: of colours times the first; the second undoes it
    std::uint32_t firstVertex = 0;
    std::uint32_t count = 0;     // of points
    std::uint32_t rowPixels = 0; // of the sums' rows
};

// In the record's order, as the shaders see it.
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

// The record's variable in a module, made once; and its values.
class PointRecordVariable {
  public:
    explicit PointRecordVariable(spirv::Module& code);
    Id pair(PointBody& body, PointMember member) const;
    Id word(PointBody& body, PointMember member) const;

  private:
    Id variable_;
};

} // namespace tarnwick::gpu
