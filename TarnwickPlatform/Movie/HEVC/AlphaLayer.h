// Makes an ordinary HEVC stream of alpha the auxiliary layer 1 of another stream: what of its
// parameter sets and slices must change, and nothing else (Rec. ITU-T H.265, F.7.3.2.2, F.7.3.2.3,
// F.7.3.6.1). Parameter sets share one space of numbers over all layers, so layer 1's become SPS 1
// and PPS 15.
#pragma once

#include "TarnwickPlatform/Movie/HEVC/NALUnits.h"

namespace tarnwick::hevc {

constexpr int alphaLayer = 1;
constexpr std::uint32_t alphaSequenceParameterSetId = 1;

// From 15 to 30 an id's code is nine bits long where that of 0 is one: all that follows it in a
// slice moves by exactly one byte, so that neither the slice's header has to be parsed nor its data
// or its entry points to change.
constexpr std::uint32_t alphaPictureParameterSetId = 15;

// `unit` of layer 0 as a unit of layer 1: an SPS or PPS with id 0, or a slice that refers to PPS 0.
// Nothing where it is none of these.
std::optional<NALUnit> movedToAlphaLayer(const NALUnit& unit);

} // namespace tarnwick::hevc
