// The forms of functions that draw points.
//
// In Vulkan the device decides the maximum size of points, the drawing of sizes below 1, and
// whether a point shows if its centre is outside of the picture (Vulkan 1.3, 27.8 and 28.10). In
// Metal all three are fixed. So the layer adds code around the vertex and fragment functions of
// points, in one of two forms:
//
// - points: the device's own, with sizes and places corrected.
// - quads: two triangles per point, from six vertices of the draw.
#pragma once

#include "TarnwickGPU/Points/PointRecord.h"
#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

enum class PointForm : std::uint8_t { points, quads };

inline constexpr float largestPoint = 511; // pixels, as in Metal

// The functions of a pipeline of points.
struct PointPair {
    const msl::EntryPoint& vertex;
    const msl::EntryPoint& fragment;
    // The first location that neither function uses.
    std::uint32_t location = 0;
    // Whether the vertex form also computes the fragment function's constants (PointConstants.h);
    // then it needs the fragment function's resources.
    bool passesConstants = false;
    // Whether the points add up; their colours are then made finite (PointColors.h).
    bool addsUp = false;
};

// Whether the function can have forms: it has no attributes, and stores its position as the layer's
// compiler writes it.
bool takesPointForms(const msl::EntryPoint& vertex);
PointPair pointPair(const msl::EntryPoint& vertex, const msl::EntryPoint& fragment);

// SPIR-V.
Words vertexForm(const PointPair& pair, PointForm form);
Words fragmentForm(const PointPair& pair, PointForm form);

// Values of a point's square, computed after the vertex function.
struct PointSquare {
    Id position; // the function's own
    Id place;    // in clip space, divided by w
    Id size;     // pixels, [0, largestPoint]
    Id width;    // the size, rounded as the device rounds its own points
    Id lower;    // its upper left corner, in pixels
    Id first;    // the first whole pixel in it
    Id covers;   // whether the centre of a pixel is inside
    Id isDrawn;  // whether it is finite, within PointRecord::reach and between the planes
};

// Default of `size`: 1, as in Metal.
PointSquare pointSquare(PointBody& body, const PointRecordVariable& record, Id position,
                        std::optional<Id> size);

} // namespace tarnwick::gpu
