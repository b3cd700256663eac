// An independent reading of HEVC streams with two layers, for tests: bit by bit, each field by its
// name in Rec. ITU-T H.265; and the way back to two streams that any decoder takes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::hevctest {

using Bytes = std::vector<std::uint8_t>;

struct Unit {
    int type = 0;
    int layer = 0;
    Bytes bytes; // header and payload, as written
};

// hvcC, read field by field: the numbers as "name value" lines, and the arrays' units.
struct Configuration {
    std::string fields;
    std::vector<Unit> units;
};

Configuration readConfiguration(const Bytes& record);

// The units of a sample, each behind four bytes of length.
std::vector<Unit> readSample(const Bytes& sample);

// The fields of a unit as "name value" lines: a VPS with its extension, an SPS up to the bit
// depths, a PPS up to its ids, a slice up to its id, a prefix SEI with alpha channel information.
// A unit with bits left over or wrong trailing bits ends in a line that says so.
std::string fields(const Unit& unit);

// A unit of layer 1 as the encoder wrote it, before it was moved: layer 0, ids 0.
Unit movedBack(const Unit& unit);

// Those units of `units` that are of `layer`, as a byte stream in layer 0.
Bytes layerStream(const std::vector<Unit>& units, int layer);

} // namespace tarnwick::hevctest
