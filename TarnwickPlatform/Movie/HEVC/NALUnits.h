// NAL units of an HEVC stream: finding them in an encoder's byte stream, and their headers (Rec.
// ITU-T H.265, 7.3.1.2, 7.4.2.2, Annex B).
#pragma once

#include "TarnwickPlatform/Movie/HEVC/Bits.h"

#include <optional>

namespace tarnwick::hevc {

// Values of nal_unit_type that are used here (H.265, table 7-1).
namespace nal {
constexpr int firstIRAP = 16; // intra random access points: 16 to 23
constexpr int IDRWithRADL = 19;
constexpr int IDRWithoutLeading = 20;
constexpr int lastIRAP = 23;
constexpr int lastSlice = 31; // video coding layer: 0 to 31
constexpr int videoParameterSet = 32;
constexpr int sequenceParameterSet = 33;
constexpr int pictureParameterSet = 34;
constexpr int prefixSEI = 39;
} // namespace nal

struct NALUnit {
    int type = 0;            // [0, 63]
    int layer = 0;           // nuh_layer_id, [0, 62]
    int temporalIdPlus1 = 1; // [1, 7]
    Bytes payload;           // without emulation prevention

    bool isSlice() const { return type <= nal::lastSlice; }
    bool isIRAP() const { return type >= nal::firstIRAP && type <= nal::lastIRAP; }

    bool operator==(const NALUnit&) const = default;
};

// The NAL units of a byte stream with start codes. They borrow its bytes.
std::vector<ByteView> splitByteStream(ByteView stream);

// nal_unit_type of a NAL unit's first byte; 63 for no bytes.
int typeOf(ByteView unit);

// Absent for less than two bytes.
std::optional<NALUnit> readNALUnit(ByteView unit);

// The bytes of header and payload, with emulation prevention, without a start code.
Bytes written(const NALUnit& unit);

// Appends the length of `unit` in 4 bytes, then `unit` (ISO/IEC 14496-15, 4.3.2).
void appendWithLength(Bytes& sample, ByteView unit);

} // namespace tarnwick::hevc
