#include "tests/TarnwickPlatform/HEVCSyntax.h"

#include <stdexcept>

namespace tarnwick::hevctest {
namespace {

// The bits of a unit behind its header, as ones and zeros, escapes taken out.
std::string bitsOf(const Bytes& unit) {
    std::string bits;
    for (std::size_t at = 2; at < unit.size(); ++at) {
        const bool escape = at >= 4 && unit[at] == 3 && unit[at - 1] == 0 && unit[at - 2] == 0;
        for (int bit = 7; bit >= 0 && !escape; --bit)
            bits += (unit[at] >> bit & 1) != 0 ? '1' : '0';
    }
    return bits;
}

// Header of `unit` in layer 0, `bits` with escapes.
Unit fromBits(const Unit& unit, const std::string& bits) {
    Unit made{unit.type, 0, {static_cast<std::uint8_t>(unit.type << 1), 1}};
    int zeros = 0;
    for (std::size_t at = 0; at + 8 <= bits.size(); at += 8) {
        const auto byte = static_cast<std::uint8_t>(std::stoi(bits.substr(at, 8), nullptr, 2));
        if (zeros >= 2 && byte <= 3) {
            made.bytes.push_back(3);
            zeros = 0;
        }
        made.bytes.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return made;
}

// Takes named fields off the front of the bits and writes them down.
class Reading {
  public:
    explicit Reading(std::string bits) : bits(std::move(bits)) {}

    std::uint32_t u(const std::string& name, std::size_t count) {
        if (at + count > bits.size())
            throw std::runtime_error(name + " lies past the end.");
        std::uint32_t value = 0;
        for (; count > 0; --count)
            value = 2 * value + (bits[at++] == '1' ? 1U : 0U);
        text += name + " " + std::to_string(value) + "\n";
        return value;
    }

    std::uint32_t ue(const std::string& name) {
        std::size_t zeros = 0;
        while (at + zeros < bits.size() && bits[at + zeros] == '0')
            ++zeros;
        at += zeros + 1;
        std::uint32_t value = 1;
        if (at + zeros > bits.size())
            throw std::runtime_error(name + " lies past the end.");
        for (; zeros > 0; --zeros)
            value = 2 * value + (bits[at++] == '1' ? 1U : 0U);
        text += name + " " + std::to_string(value - 1) + "\n";
        return value - 1;
    }

    void profileTierLevel(bool profilePresent) {
        if (profilePresent) {
            u("general_profile_space", 2);
            u("general_tier_flag", 1);
            u("general_profile_idc", 5);
            at += 32 + 48; // compatibility and constraints
        }
        u("general_level_idc", 8);
    }

    // What must follow the last field: a one and zeros up to the next byte.
    void trailing() {
        const std::string rest = bits.substr(at);
        if (rest.size() > 8 || rest.find('1') != 0 || rest.find('1', 1) != std::string::npos)
            text += "wrong trailing bits " + rest.substr(0, 32) + "\n";
    }

    std::string bits;
    std::size_t at = 0;
    std::string text;
};

void buffering(Reading& reading, const std::string& prefix) {
    reading.ue(prefix + "max_dec_pic_buffering_minus1");
    reading.ue(prefix + "max_num_reorder_pics");
    reading.ue(prefix + "max_latency_increase_plus1");
}

// F.7.3.2.1.1 for two layers, the second of which depends on none.
void vpsExtension(Reading& reading) {
    reading.profileTierLevel(false);
    reading.u("splitting_flag", 1);
    reading.u("scalability_mask_flag", 16);
    reading.u("dimension_id_len_minus1", 3);
    reading.u("vps_nuh_layer_id_present_flag", 1);
    reading.u("layer_id_in_nuh[1]", 6);
    reading.u("dimension_id[1][0]", 1);
    reading.u("view_id_len", 4);
    reading.u("direct_dependency_flag[1][0]", 1);
    reading.ue("num_add_layer_sets");
    reading.u("highest_layer_idx_plus1[0][1]", 1);
    reading.u("vps_sub_layers_max_minus1_present_flag", 1);
    reading.u("max_tid_ref_present_flag", 1);
    reading.u("default_ref_layers_active_flag", 1);
    reading.ue("vps_num_profile_tier_level_minus1");
    reading.ue("num_add_olss");
    reading.u("default_output_layer_idc", 2);
    reading.u("output_layer_flag[1][0]", 1);
    reading.u("profile_tier_level_idx[1][0]", 1);
    reading.ue("vps_num_rep_formats_minus1");
    reading.u("pic_width_vps_in_luma_samples", 16);
    reading.u("pic_height_vps_in_luma_samples", 16);
    reading.u("chroma_and_bit_depth_vps_present_flag", 1);
    reading.u("chroma_format_vps_idc", 2);
    reading.u("bit_depth_vps_luma_minus8", 4);
    reading.u("bit_depth_vps_chroma_minus8", 4);
    if (reading.u("conformance_window_vps_flag", 1) != 0)
        for (const char* side : {"left", "right", "top", "bottom"})
            reading.ue(std::string("conf_win_vps_") + side + "_offset");
    reading.u("max_one_active_ref_layer_flag", 1);
    reading.u("vps_poc_lsb_aligned_flag", 1);
    reading.u("poc_lsb_not_present_flag[1]", 1);
    reading.u("sub_layer_flag_info_present_flag[1]", 1);
    buffering(reading, "dpb_size.");
    reading.ue("direct_dep_type_len_minus2");
    reading.u("direct_dependency_all_layers_flag", 1);
    reading.ue("vps_non_vui_extension_length");
    reading.u("vps_vui_present_flag", 1);
}

void videoParameterSet(Reading& reading) {
    reading.u("vps_video_parameter_set_id", 4);
    reading.u("vps_base_layer_internal_flag", 1);
    reading.u("vps_base_layer_available_flag", 1);
    reading.u("vps_max_layers_minus1", 6);
    reading.u("vps_max_sub_layers_minus1", 3);
    reading.u("vps_temporal_id_nesting_flag", 1);
    reading.u("vps_reserved_0xffff_16bits", 16);
    reading.profileTierLevel(true);
    reading.u("vps_sub_layer_ordering_info_present_flag", 1);
    buffering(reading, "vps_");
    reading.u("vps_max_layer_id", 6);
    reading.ue("vps_num_layer_sets_minus1");
    reading.u("vps_timing_info_present_flag", 1);
    if (reading.u("vps_extension_flag", 1) != 0) {
        while (reading.at % 8 != 0)
            if (reading.bits[reading.at++] != '1')
                reading.text += "a zero where vps_extension_alignment_bit_equal_to_one stands\n";
        vpsExtension(reading);
        reading.u("vps_extension2_flag", 1);
    }
    reading.trailing();
}

void sequenceParameterSet(Reading& reading) {
    reading.u("sps_video_parameter_set_id", 4);
    reading.u("sps_max_sub_layers_minus1", 3);
    reading.u("sps_temporal_id_nesting_flag", 1);
    reading.profileTierLevel(true);
    reading.ue("sps_seq_parameter_set_id");
    reading.ue("chroma_format_idc");
    reading.ue("pic_width_in_luma_samples");
    reading.ue("pic_height_in_luma_samples");
    if (reading.u("conformance_window_flag", 1) != 0)
        for (const char* side : {"left", "right", "top", "bottom"})
            reading.ue(std::string("conf_win_") + side + "_offset");
    reading.ue("bit_depth_luma_minus8");
    reading.ue("bit_depth_chroma_minus8");
}

void supplementalInformation(Reading& reading) {
    reading.u("payloadType", 8);
    reading.u("payloadSize", 8);
    reading.u("alpha_channel_cancel_flag", 1);
    reading.u("alpha_channel_use_idc", 3);
    reading.u("alpha_channel_bit_depth_minus8", 3);
    reading.u("alpha_transparent_value", 9);
    reading.u("alpha_opaque_value", 9);
    reading.u("alpha_channel_incr_flag", 1);
    reading.u("alpha_channel_clip_flag", 1);
    reading.u("payload_bit_equal_to_one", 1);
    reading.u("payload_bit_equal_to_zero", 4);
    reading.trailing();
}

Unit unitOf(const Bytes& bytes) {
    if (bytes.size() < 3)
        throw std::runtime_error("A unit of less than three bytes.");
    return {bytes[0] >> 1, (bytes[0] & 1) << 5 | bytes[1] >> 3, bytes};
}

Bytes slice(const Bytes& bytes, std::size_t offset, std::size_t count) {
    if (offset + count > bytes.size())
        throw std::runtime_error("A unit lies past the end.");
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

} // namespace

Configuration readConfiguration(const Bytes& record) {
    std::string bits;
    for (const std::uint8_t byte : record)
        for (int bit = 7; bit >= 0; --bit)
            bits += (byte >> bit & 1) != 0 ? '1' : '0';
    Reading reading(bits);
    reading.u("configurationVersion", 8);
    reading.profileTierLevel(true);
    reading.u("reserved min_spatial_segmentation_idc", 16);
    reading.u("reserved parallelismType", 8);
    reading.u("reserved chromaFormat", 8);
    reading.u("reserved bitDepthLumaMinus8", 8);
    reading.u("reserved bitDepthChromaMinus8", 8);
    reading.u("avgFrameRate", 16);
    reading.u("constantFrameRate", 2);
    reading.u("numTemporalLayers", 3);
    reading.u("temporalIdNested", 1);
    reading.u("lengthSizeMinusOne", 2);
    Configuration read;
    for (auto arrays = reading.u("numOfArrays", 8); arrays > 0; --arrays) {
        reading.u("array_completeness", 1);
        reading.u("reserved NAL_unit_type", 7);
        for (auto units = reading.u("numNalus", 16); units > 0; --units) {
            const std::size_t length = std::stoul(bits.substr(reading.at, 16), nullptr, 2);
            read.units.push_back(unitOf(slice(record, reading.at / 8 + 2, length)));
            reading.at += 16 + 8 * length;
        }
    }
    if (reading.at != bits.size())
        reading.text += "bits left over\n";
    read.fields = reading.text;
    return read;
}

std::vector<Unit> readSample(const Bytes& sample) {
    std::vector<Unit> units;
    for (std::size_t at = 0; at < sample.size();) {
        const Bytes length = slice(sample, at, 4);
        const std::size_t count = std::size_t{length[0]} << 24 | std::size_t{length[1]} << 16 |
                                  std::size_t{length[2]} << 8 | length[3];
        units.push_back(unitOf(slice(sample, at + 4, count)));
        at += 4 + count;
    }
    return units;
}

std::string fields(const Unit& unit) {
    Reading reading(bitsOf(unit.bytes));
    if (unit.type == 32) {
        videoParameterSet(reading);
    } else if (unit.type == 33) {
        sequenceParameterSet(reading);
    } else if (unit.type == 34) {
        reading.ue("pps_pic_parameter_set_id");
        reading.ue("pps_seq_parameter_set_id");
    } else if (unit.type == 39) {
        supplementalInformation(reading);
    } else {
        reading.u("first_slice_segment_in_pic_flag", 1);
        if (unit.type >= 16 && unit.type <= 23)
            reading.u("no_output_of_prior_pics_flag", 1);
        reading.ue("slice_pic_parameter_set_id");
    }
    return reading.text;
}

Unit movedBack(const Unit& unit) {
    const std::string bits = bitsOf(unit.bytes);
    const std::string end = bits.substr(0, bits.rfind('1')); // without the trailing bits
    std::string back;
    if (unit.type == 33)
        back = end.substr(0, 104) + "1" + end.substr(104 + 3); // 010 was 1
    else if (unit.type == 34)
        back = "11" + end.substr(9 + 3); // 000010000 010
    else if (unit.type >= 16 && unit.type <= 23)
        back = end.substr(0, 2) + "1" + end.substr(2 + 9);
    else
        back = end.substr(0, 1) + "1" + end.substr(1 + 9);
    back += '1';
    back.resize((back.size() + 7) / 8 * 8, '0');
    return fromBits(unit, back);
}

Bytes layerStream(const std::vector<Unit>& units, int layer) {
    Bytes stream;
    for (const Unit& unit : units) {
        if (unit.layer != layer)
            continue;
        const Bytes bytes = unit.bytes[1] >> 3 == 0 ? unit.bytes : movedBack(unit).bytes;
        stream.insert(stream.end(), {0, 0, 0, 1});
        stream.insert(stream.end(), bytes.begin(), bytes.end());
    }
    return stream;
}

} // namespace tarnwick::hevctest
