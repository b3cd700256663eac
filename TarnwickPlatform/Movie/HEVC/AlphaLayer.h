// Changes the parameter sets and slices of an ordinary HEVC stream of alpha so that it is the
// auxiliary layer 1 of another stream (Rec. ITU-T H.265, F.7.3.2.2, F.7.3.2.3, F.7.3.6.1). The ids
// of parameter sets are unique over all layers, so those of layer 1 become SPS 1 and PPS 15.
#pragma once

#include "TarnwickPlatform/Movie/HEVC/NALUnits.h"

namespace tarnwick::hevc {

constexpr int alphaLayer = 1;
constexpr std::uint32_t alphaSequenceParameterSetId = 1;

// The code of an id from 15 to 30 has nine bits, that of 0 has one: the rest of a slice moves by
// exactly one byte, so its header need not be parsed, and its data and entry points stay the same.
constexpr std::uint32_t alphaPictureParameterSetId = 15;

// Moves `unit` from layer 0 to layer 1: an SPS or PPS with id 0, or a slice that refers to PPS 0.
// Absent for any other unit.
std::optional<NALUnit> movedToAlphaLayer(const NALUnit& unit);

} // namespace tarnwick::hevc
