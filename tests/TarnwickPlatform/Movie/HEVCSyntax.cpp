#include "tests/TarnwickPlatform/Movie/HEVCSyntax.h"

#include <algorithm>
#include <sstream>
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

    // A field of `count` bits: u(n).
    std::uint32_t number(const std::string& name, std::size_t count) {
        if (at + count > bits.size())
            throw std::runtime_error(name + " lies past the end.");
        std::uint32_t value = 0;
        for (; count > 0; --count)
            value = 2 * value + (bits[at++] == '1' ? 1U : 0U);
        text += name + " " + std::to_string(value) + "\n";
        return value;
    }

    // A field of an exponential-Golomb code: ue(v).
    void code(const std::string& name) {
        const std::size_t zeros = std::min(bits.find('1', at), bits.size()) - at;
        at += zeros;
        std::uint32_t value = 0;
        if (at + zeros + 1 > bits.size())
            throw std::runtime_error(name + " lies past the end.");
        for (std::size_t left = zeros + 1; left > 0; --left)
            value = 2 * value + (bits[at++] == '1' ? 1U : 0U);
        text += name + " " + std::to_string(value - 1) + "\n";
    }

    // Fields in their order: "NAME:BITS", "NAME:ue", or ":BITS" to pass over. Gives the last one of
    // so many bits.
    std::uint32_t read(const std::string& syntax) {
        std::istringstream words(syntax);
        std::uint32_t last = 0;
        for (std::string word; words >> word;) {
            const std::size_t colon = word.rfind(':');
            const std::string name = word.substr(0, colon), kind = word.substr(colon + 1);
            if (kind == "ue")
                code(name);
            else if (name.empty())
                at += std::stoul(kind);
            else
                last = number(name, std::stoul(kind));
        }
        return last;
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

const std::string profileTierLevel = // compatibility and constraint flags passed over
    "general_profile_space:2 general_tier_flag:1 general_profile_idc:5 :80 general_level_idc:8 ";
const std::string window = "left_offset:ue right_offset:ue top_offset:ue bottom_offset:ue";

// F.7.3.2.1.1 for two layers, the second of which depends on none.
void vpsExtension(Reading& reading) {
    if (reading.read("general_level_idc:8 splitting_flag:1 scalability_mask_flag:16 "
                     "dimension_id_len_minus1:3 vps_nuh_layer_id_present_flag:1 "
                     "layer_id_in_nuh[1]:6 dimension_id[1][0]:1 view_id_len:4 "
                     "direct_dependency_flag[1][0]:1 num_add_layer_sets:ue "
                     "highest_layer_idx_plus1[0][1]:1 vps_sub_layers_max_minus1_present_flag:1 "
                     "max_tid_ref_present_flag:1 default_ref_layers_active_flag:1 "
                     "vps_num_profile_tier_level_minus1:ue num_add_olss:ue "
                     "default_output_layer_idc:2 output_layer_flag[1][0]:1 "
                     "profile_tier_level_idx[1][0]:1 vps_num_rep_formats_minus1:ue "
                     "pic_width_vps_in_luma_samples:16 pic_height_vps_in_luma_samples:16 "
                     "chroma_and_bit_depth_vps_present_flag:1 chroma_format_vps_idc:2 "
                     "bit_depth_vps_luma_minus8:4 bit_depth_vps_chroma_minus8:4 "
                     "conformance_window_vps_flag:1") != 0)
        reading.read(window);
    reading.read("max_one_active_ref_layer_flag:1 vps_poc_lsb_aligned_flag:1 "
                 "poc_lsb_not_present_flag[1]:1 sub_layer_flag_info_present_flag[1]:1 "
                 "max_vps_dec_pic_buffering_minus1:ue max_vps_num_reorder_pics:ue "
                 "max_vps_latency_increase_plus1:ue direct_dep_type_len_minus2:ue "
                 "direct_dependency_all_layers_flag:1 vps_non_vui_extension_length:ue "
                 "vps_vui_present_flag:1");
}

void videoParameterSet(Reading& reading) {
    if (reading.read("vps_video_parameter_set_id:4 vps_base_layer_internal_flag:1 "
                     "vps_base_layer_available_flag:1 vps_max_layers_minus1:6 "
                     "vps_max_sub_layers_minus1:3 vps_temporal_id_nesting_flag:1 "
                     "vps_reserved_0xffff_16bits:16 " +
                     profileTierLevel +
                     "vps_sub_layer_ordering_info_present_flag:1 "
                     "vps_max_dec_pic_buffering_minus1:ue vps_max_num_reorder_pics:ue "
                     "vps_max_latency_increase_plus1:ue vps_max_layer_id:6 "
                     "vps_num_layer_sets_minus1:ue vps_timing_info_present_flag:1 "
                     "vps_extension_flag:1") != 0) {
        while (reading.at % 8 != 0)
            if (reading.bits[reading.at++] != '1')
                reading.text += "a zero where vps_extension_alignment_bit_equal_to_one stands\n";
        vpsExtension(reading);
        reading.read("vps_extension2_flag:1");
    }
    reading.trailing();
}

void sequenceParameterSet(Reading& reading) {
    if (reading.read("sps_video_parameter_set_id:4 sps_max_sub_layers_minus1:3 "
                     "sps_temporal_id_nesting_flag:1 " +
                     profileTierLevel +
                     "sps_seq_parameter_set_id:ue chroma_format_idc:ue "
                     "pic_width_in_luma_samples:ue pic_height_in_luma_samples:ue "
                     "conformance_window_flag:1") != 0)
        reading.read(window);
    reading.read("bit_depth_luma_minus8:ue bit_depth_chroma_minus8:ue");
}

void supplementalInformation(Reading& reading) {
    reading.read("payloadType:8 payloadSize:8 alpha_channel_cancel_flag:1 "
                 "alpha_channel_use_idc:3 alpha_channel_bit_depth_minus8:3 "
                 "alpha_transparent_value:9 alpha_opaque_value:9 alpha_channel_incr_flag:1 "
                 "alpha_channel_clip_flag:1 payload_bit_equal_to_one:1 "
                 "payload_bit_equal_to_zero:4");
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
    reading.read("configurationVersion:8 " + profileTierLevel +
                 "reserved+min_spatial_segmentation_idc:16 reserved+parallelismType:8 "
                 "reserved+chromaFormat:8 reserved+bitDepthLumaMinus8:8 "
                 "reserved+bitDepthChromaMinus8:8 avgFrameRate:16 constantFrameRate:2 "
                 "numTemporalLayers:3 temporalIdNested:1 lengthSizeMinusOne:2");
    Configuration read;
    for (auto arrays = reading.read("numOfArrays:8"); arrays > 0; --arrays) {
        for (auto units = reading.read("array_completeness:1 reserved+NAL_unit_type:7 numNalus:16");
             units > 0; --units) {
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
        reading.read("pps_pic_parameter_set_id:ue pps_seq_parameter_set_id:ue");
    } else if (unit.type == 39) {
        supplementalInformation(reading);
    } else {
        const bool isRandomAccess = unit.type >= 16 && unit.type <= 23;
        reading.read("first_slice_segment_in_pic_flag:1");
        reading.read(isRandomAccess ? "no_output_of_prior_pics_flag:1" : "");
        reading.read("slice_pic_parameter_set_id:ue");
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
