// Makes the colours that points add to a target finite. Without this, a picture of points that add
// up would depend on the PointWay: sums of integers hold neither NaN nor infinity, and a target of
// halves keeps both.
#pragma once

#include "TarnwickGPU/Points/PointBody.h"

namespace tarnwick::gpu {

// The greatest finite half (IEEE 754 binary16).
inline constexpr float greatestHalf = 65504;

// Four floats, each clamped to [-greatestHalf, greatestHalf]; NaN becomes 0.
Id finiteColor(PointBody& body, Id color);

// At the end of a fragment function: makes color(0) finite if it has four floats.
void keepColorFinite(PointBody& body);

} // namespace tarnwick::gpu
