#include "TarnwickPlatform/Movie/HEVC/ParameterSets.h"

#include "TarnwickPlatform/Movie/HEVC/AlphaLayer.h"

namespace tarnwick::hevc {
namespace {

std::array<std::uint8_t, 12> readProfileTierLevel(BitReader& from) {
    std::array<std::uint8_t, 12> bytes{};
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(from.bits(8));
    return bytes;
}

void write(BitWriter& to, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes)
        to.bits(byte, 8);
}

void writeBuffering(BitWriter& to, const VideoParameterSet& base) {
    to.exponentialGolomb(base.maxDecodedPicturesMinus1);
    to.exponentialGolomb(base.maxReorderedPictures);
    to.exponentialGolomb(base.maxLatencyPlus1);
}

// video_parameter_set_rbsp() up to the extension. There are two layers; the one layer set that is
// possible here has the base alone.
void writeForBaseDecoders(BitWriter& to, const VideoParameterSet& base) {
    to.bits(0, 4); // vps_video_parameter_set_id
    to.flag(true); // vps_base_layer_internal_flag
    to.flag(true); // vps_base_layer_available_flag
    to.bits(1, 6); // vps_max_layers_minus1
    to.bits(0, 3); // vps_max_sub_layers_minus1
    to.flag(base.temporalIdNesting);
    to.bits(0xffff, 16);
    write(to, base.profileTierLevel);
    to.flag(false); // vps_sub_layer_ordering_info_present_flag
    writeBuffering(to, base);
    to.bits(1, 6);           // vps_max_layer_id
    to.exponentialGolomb(0); // vps_num_layer_sets_minus1
    to.flag(false);          // vps_timing_info_present_flag
}

// Layer 1 is alpha, depends on no other layer, and has its own layer set.
void writeLayers(BitWriter& to) {
    constexpr std::uint32_t auxiliaryId = 0x1000; // scalability_mask_flag[3] of 16
    constexpr std::uint32_t alpha = 1;            // table F.2
    to.flag(false);                               // splitting_flag
    to.bits(auxiliaryId, 16);
    to.bits(0, 3);                                      // dimension_id_len_minus1
    to.flag(true);                                      // vps_nuh_layer_id_present_flag
    to.bits(static_cast<std::uint32_t>(alphaLayer), 6); // layer_id_in_nuh[1]
    to.bits(alpha, 1);                                  // dimension_id[1][0]
    to.bits(0, 4);                                      // view_id_len
    to.flag(false);                                     // direct_dependency_flag[1][0]
    to.exponentialGolomb(1);                            // num_add_layer_sets
    to.bits(1, 1);                                      // highest_layer_idx_plus1[0][1]
    to.flag(false);                                     // vps_sub_layers_max_minus1_present_flag
    to.flag(false);                                     // max_tid_ref_present_flag
    to.flag(false);                                     // default_ref_layers_active_flag
}

void writeOutputLayerSets(BitWriter& to) {
    to.exponentialGolomb(1); // vps_num_profile_tier_level_minus1: the VPS's and the extension's
    to.exponentialGolomb(0); // num_add_olss
    to.bits(0, 2);           // default_output_layer_idc: all layers of a set are output
    to.flag(false);          // output_layer_flag[1][0]: no meaning beside the line above
    to.bits(1, 1);           // profile_tier_level_idx[1][0]: the extension's
}

// vps_num_rep_formats_minus1 and its one rep_format().
void writePictureFormat(BitWriter& to, const SequenceParameterSet& format) {
    to.exponentialGolomb(0);
    to.bits(format.codedWidth, 16);
    to.bits(format.codedHeight, 16);
    to.flag(true); // chroma_and_bit_depth_vps_present_flag
    to.bits(format.chromaFormat, 2);
    to.bits(format.lumaDepthMinus8, 4);
    to.bits(format.chromaDepthMinus8, 4);
    to.flag(format.window.has_value());
    if (format.window) {
        to.exponentialGolomb(format.window->left);
        to.exponentialGolomb(format.window->right);
        to.exponentialGolomb(format.window->top);
        to.exponentialGolomb(format.window->bottom);
    }
}

void writeExtension(BitWriter& to, const VideoParameterSet& base,
                    const SequenceParameterSet& format) {
    to.bits(base.profileTierLevel.back(), 8); // profile_tier_level() without a profile: the level
    writeLayers(to);
    writeOutputLayerSets(to);
    writePictureFormat(to, format);
    to.flag(true);  // max_one_active_ref_layer_flag
    to.flag(true);  // vps_poc_lsb_aligned_flag
    to.flag(true);  // poc_lsb_not_present_flag[1]: IDR slices stay as they are
    to.flag(false); // sub_layer_flag_info_present_flag[1], then dpb_size() of alpha's set
    writeBuffering(to, base);
    to.exponentialGolomb(0); // direct_dep_type_len_minus2
    to.flag(false);          // direct_dependency_all_layers_flag
    to.exponentialGolomb(0); // vps_non_vui_extension_length
    to.flag(false);          // vps_vui_present_flag
}

void appendArray(BitWriter& to, int type, bool complete, const std::vector<Bytes>& units) {
    to.flag(complete);
    to.bits(0, 1);
    to.bits(static_cast<std::uint32_t>(type), 6);
    to.bits(static_cast<std::uint32_t>(units.size()), 16);
    for (const Bytes& unit : units) {
        to.bits(static_cast<std::uint32_t>(unit.size()), 16);
        write(to, unit);
    }
}

} // namespace

std::optional<VideoParameterSet> readVideoParameterSet(const NALUnit& unit) {
    BitReader from(unit.payload);
    from.bits(4 + 2 + 6);
    const std::uint32_t subLayersMinus1 = from.bits(3);
    VideoParameterSet read;
    read.temporalIdNesting = from.flag();
    from.bits(16);
    read.profileTierLevel = readProfileTierLevel(from);
    from.bits(1);
    read.maxDecodedPicturesMinus1 = from.exponentialGolomb();
    read.maxReorderedPictures = from.exponentialGolomb();
    read.maxLatencyPlus1 = from.exponentialGolomb();
    if (unit.type != nal::videoParameterSet || subLayersMinus1 != 0 || from.pastEnd())
        return std::nullopt;
    return read;
}

std::optional<SequenceParameterSet> readSequenceParameterSet(const NALUnit& unit) {
    BitReader from(unit.payload);
    from.bits(4);
    const std::uint32_t subLayersMinus1 = from.bits(3);
    SequenceParameterSet read;
    read.temporalIdNesting = from.flag();
    read.profileTierLevel = readProfileTierLevel(from);
    from.exponentialGolomb(); // sps_seq_parameter_set_id
    read.chromaFormat = from.exponentialGolomb();
    if (read.chromaFormat == 3)
        from.flag(); // separate_colour_plane_flag
    read.codedWidth = from.exponentialGolomb();
    read.codedHeight = from.exponentialGolomb();
    if (from.flag()) {
        ConformanceWindow& window = read.window.emplace();
        for (std::uint32_t* side : {&window.left, &window.right, &window.top, &window.bottom})
            *side = from.exponentialGolomb();
    }
    read.lumaDepthMinus8 = from.exponentialGolomb();
    read.chromaDepthMinus8 = from.exponentialGolomb();
    if (unit.type != nal::sequenceParameterSet || subLayersMinus1 != 0 || from.pastEnd())
        return std::nullopt;
    return read;
}

NALUnit videoParameterSetWithAlpha(const VideoParameterSet& base,
                                   const SequenceParameterSet& format) {
    BitWriter to;
    writeForBaseDecoders(to, base);
    to.flag(true);      // vps_extension_flag
    to.alignWithOnes(); // vps_extension_alignment_bit_equal_to_one
    writeExtension(to, base, format);
    to.flag(false); // vps_extension2_flag
    to.trailingBits();
    return {.type = nal::videoParameterSet, .payload = to.take()};
}

NALUnit alphaChannelInformation(AlphaKind kind) {
    BitWriter to;
    to.bits(165, 8);                                      // payloadType
    to.bits(4, 8);                                        // payloadSize
    to.flag(false);                                       // alpha_channel_cancel_flag
    to.bits(kind == AlphaKind::premultiplied ? 1 : 0, 3); // alpha_channel_use_idc
    to.bits(0, 3);                                        // alpha_channel_bit_depth_minus8
    to.bits(0, 9);                                        // alpha_transparent_value
    to.bits(255, 9);                                      // alpha_opaque_value
    to.flag(false);                                       // alpha_channel_incr_flag
    to.flag(false);                                       // alpha_channel_clip_flag
    to.trailingBits(); // the payload's own padding has the same shape
    to.trailingBits();
    return {.type = nal::prefixSEI, .payload = to.take()};
}

Bytes decoderConfigurationRecord(const DecoderConfiguration& configuration) {
    BitWriter to;
    to.bits(1, 8); // configurationVersion
    write(to, configuration.format.profileTierLevel);
    to.bits(0xf000, 16); // min_spatial_segmentation_idc: 0
    to.bits(0xfc, 8);    // parallelismType: not known
    to.bits(0xfc | configuration.format.chromaFormat, 8);
    to.bits(0xf8 | configuration.format.lumaDepthMinus8, 8);
    to.bits(0xf8 | configuration.format.chromaDepthMinus8, 8);
    to.bits(0, 16); // avgFrameRate: not said
    to.bits(0, 2);  // constantFrameRate: not said
    to.bits(1, 3);  // numTemporalLayers
    to.flag(configuration.format.temporalIdNesting);
    to.bits(3, 2); // lengthSizeMinusOne
    to.bits(4, 8); // numOfArrays
    appendArray(to, nal::videoParameterSet, true, configuration.videoParameterSets);
    appendArray(to, nal::sequenceParameterSet, true, configuration.sequenceParameterSets);
    appendArray(to, nal::pictureParameterSet, true, configuration.pictureParameterSets);
    appendArray(to, nal::prefixSEI, false, configuration.supplementalInformation);
    return to.take();
}

} // namespace tarnwick::hevc
