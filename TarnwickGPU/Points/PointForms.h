// The forms of functions that draw points.
//
// Vulkan leaves open how large its own points can be, what becomes of sizes below 1, and whether a
// point whose centre lies outside of the picture shows what of it lies inside (Vulkan 1.3, 27.8 and
// 28.10). So vertex and fragment functions of points get code of the layer's around them, in one
// of two forms:
//
// - points: the device's own. What it would draw differently is kept from it or corrected.
// - quads: two triangles a point, from six vertices of the draw.
#pragma once

#include "TarnwickGPU/Points/PointRecord.h"
#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

enum class PointForm : std::uint8_t { points, quads };

inline constexpr float largestPoint = 511; // pixels, as in Metal

// How a pair of functions is drawn.
struct PointPair {
    const msl::EntryPoint& vertex;
    const msl::EntryPoint& fragment;
    // The first of the locations that neither uses.
    std::uint32_t location = 0;
    // Whether the vertex function also works out what is the same all over a point
    // (PointConstants.h); it then sees the fragment function's resources.
    bool passesConstants = false;
    // Whether the points add up: what they add is then kept finite (PointColors.h).
    bool addsUp = false;
};

// Whether the function gives its position as the layer's compiler lets it: forms are for these.
bool takesPointForms(const msl::EntryPoint& vertex);
PointPair pointPair(const msl::EntryPoint& vertex, const msl::EntryPoint& fragment);

Words vertexForm(const PointPair& pair, PointForm form);
Words fragmentForm(const PointPair& pair, PointForm form);

// Where a point's square lies, as the code behind a vertex function works it out.
struct PointSquare {
    Id position; // the function's own
    Id place;    // in clip space, divided by w
    Id size;     // pixels, at most largestPoint
    Id width;    // the size, rounded as the device's own points' are
    Id lower;    // its upper left corner, in pixels
    Id first;    // the first whole pixel in it
    Id covers;   // a pixel's centre lies in it
    Id isDrawn;  // finite, in reach and not behind a plane
};

// `size` is none where the function gives no size: then it is 1, as in Metal.
PointSquare pointSquare(PointBody& body, const PointRecordVariable& record, Id position,
                        std::optional<Id> size);

} // namespace tarnwick::gpu
