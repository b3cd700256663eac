// Private to this folder: two HEVC streams, of colour and of alpha, as the two layers of one.
//
// Both come from ordinary encoders that were set up alike and know nothing of each other. The
// colour stream stays as it is, bit for bit, so a decoder that knows nothing of layers shows it;
// the alpha stream becomes auxiliary layer 1 (Rec. ITU-T H.265, annexes F and I), which shares each
// of its access units.
#pragma once

#include "TarnwickPlatform/Movie/HEVC/ParameterSets.h"

namespace tarnwick::hevc {

class LayeredStream {
  public:
    // Takes the parameter sets of both encoders as byte streams: a VPS, an SPS and a PPS each.
    // Throws MovieError where they are others, or the layers' pictures differ in size or kind.
    LayeredStream(ByteView colourSets, ByteView alphaSets, AlphaKind kind);

    // HEVCDecoderConfigurationRecord for a track of sample entry hvc1: VPS, SPS 0 and 1, PPS 0 and
    // 15, and the alpha channel information.
    const Bytes& configuration() const { return configuration_; }

    // Whether two packets may share an access unit: their slices are of the same types.
    bool pairsUp(ByteView colour, ByteView alpha) const;

    // One access unit, each NAL unit behind its length in 4 bytes: in an IDR picture the alpha
    // channel information; colour's slices; alpha's. Takes one packet of each encoder as byte
    // streams. Throws MovieError where the slices do not pair up by their types.
    Bytes accessUnit(ByteView colour, ByteView alpha) const;

  private:
    Bytes information; // the alpha channel information's NAL unit
    Bytes configuration_;
};

} // namespace tarnwick::hevc
