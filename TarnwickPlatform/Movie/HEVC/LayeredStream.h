// Makes two HEVC streams, of colour and of alpha, the two layers of one stream.
//
// Both come from ordinary encoders with the same settings. The colour stream is not changed, so a
// decoder without layers displays it. The alpha stream becomes auxiliary layer 1 (Rec. ITU-T H.265,
// annexes F and I) in the same access units.
#pragma once

#include "TarnwickPlatform/Movie/HEVC/ParameterSets.h"

namespace tarnwick::hevc {

class LayeredStream {
  public:
    // Takes the parameter sets of both encoders as byte streams: a VPS, an SPS and a PPS each.
    // Throws MovieError if there are others, or the layers' pictures differ in size or format.
    LayeredStream(ByteView colourSets, ByteView alphaSets, AlphaKind kind);

    // HEVCDecoderConfigurationRecord for a track of sample entry hvc1: VPS, SPS 0 and 1, PPS 0 and
    // 15, and the alpha channel information.
    const Bytes& configuration() const { return configuration_; }

    // Whether two packets may share an access unit, that is, their slices have the same types.
    bool pairsUp(ByteView colour, ByteView alpha) const;

    // One access unit of NAL units, each after its length in 4 bytes: in an IDR picture the alpha
    // channel information, then colour's slices, then alpha's. Takes one packet of each encoder as
    // byte streams. Throws MovieError if the slices' types differ.
    Bytes accessUnit(ByteView colour, ByteView alpha) const;

  private:
    Bytes information; // NAL unit of the alpha channel information
    Bytes configuration_;
};

} // namespace tarnwick::hevc
