// Reads the fields of parameter sets that another parameter set or a container repeats, and writes
// the VPS and the SEI of an alpha layer (Rec. ITU-T H.265, 7.3.2, 7.3.3, F.7.3.2.1, F.14.2.8).
#pragma once

#include "TarnwickPlatform/Movie/HEVC/NALUnits.h"
#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <array>

namespace tarnwick::hevc {

// A VPS of one sub-layer.
struct VideoParameterSet {
    bool temporalIdNesting = true;
    std::array<std::uint8_t, 12> profileTierLevel{}; // profile_tier_level(), level last
    std::uint32_t maxDecodedPicturesMinus1 = 0;      // vps_max_dec_pic_buffering_minus1
    std::uint32_t maxReorderedPictures = 0;          // vps_max_num_reorder_pics
    std::uint32_t maxLatencyPlus1 = 0;               // vps_max_latency_increase_plus1

    bool operator==(const VideoParameterSet&) const = default;
};

// Margins that are coded but not displayed, in chroma samples.
struct ConformanceWindow {
    std::uint32_t left = 0, right = 0, top = 0, bottom = 0;

    bool operator==(const ConformanceWindow&) const = default;
};

// The first fields of an SPS of one sub-layer.
struct SequenceParameterSet {
    std::array<std::uint8_t, 12> profileTierLevel{};
    bool temporalIdNesting = true;
    std::uint32_t chromaFormat = 1;                // chroma_format_idc: 1 is 4:2:0
    std::uint32_t codedWidth = 0, codedHeight = 0; // luma samples
    std::optional<ConformanceWindow> window;
    std::uint32_t lumaDepthMinus8 = 0, chromaDepthMinus8 = 0;

    bool operator==(const SequenceParameterSet&) const = default;
};

// Both are absent if there is more than one sub-layer or the payload ends too early.
std::optional<VideoParameterSet> readVideoParameterSet(const NALUnit& unit);
std::optional<SequenceParameterSet> readSequenceParameterSet(const NALUnit& unit);

// A VPS of two independent layers with pictures of `format`: `base`, and an auxiliary layer of
// alpha with as many pictures in its buffer. It has two output layer sets, colour alone and alpha
// alone.
NALUnit videoParameterSetWithAlpha(const VideoParameterSet& base,
                                   const SequenceParameterSet& format);

// A prefix SEI with the alpha channel information: 8 bits, 0 is transparent, 255 opaque.
NALUnit alphaChannelInformation(AlphaKind kind);

// The contents of a track's hvcC. Units are written unchanged, each complete.
struct DecoderConfiguration {
    SequenceParameterSet format;
    std::vector<Bytes> videoParameterSets, sequenceParameterSets, pictureParameterSets;
    std::vector<Bytes> supplementalInformation; // samples may have it too
};

// HEVCDecoderConfigurationRecord with lengths of 4 bytes (ISO/IEC 14496-15, 8.3.2.1).
Bytes decoderConfigurationRecord(const DecoderConfiguration& configuration);

} // namespace tarnwick::hevc
