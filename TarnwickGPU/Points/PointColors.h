// What points add to a target: a fragment function's colour, kept finite. Pictures of points that
// add up would else depend on the way that they are drawn (PointPipelines.h): a sum of whole
// numbers holds neither NaN nor infinity, a target of halves keeps both for ever.
#pragma once

#include "TarnwickGPU/Points/PointBody.h"

namespace tarnwick::gpu {

// The greatest finite half (IEEE 754 binary16).
inline constexpr float greatestHalf = 65504;

// Four floats, each in [-greatestHalf, greatestHalf]: NaN becomes 0, what lies beyond the nearest.
Id finiteColor(PointBody& body, Id color);

// Behind a fragment function: makes its colour 0 such a one, if it has four floats.
void keepColorFinite(PointBody& body);

} // namespace tarnwick::gpu
