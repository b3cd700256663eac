// The functions of FFmpeg's libraries that this system uses, loaded when one is first called.
//
// The libraries load a hundred others, which takes each start of a program 20 to 35 ms; most
// commands read and write no film. So they are opened by dlopen, in the versions of the headers
// that the system was built with.
#pragma once

#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

namespace tarnwick {

// A library cannot be loaded. what() is a sentence that names it.
struct LibavError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Loads the libraries at the first call. The address of their function. Throws LibavError.
void* libavFunction(const char* name);

// The functions by their names in the libraries.
struct LibavFunctions {
#define TARNWICK_FUNCTION(name)                                                                    \
    decltype(&::name) name = reinterpret_cast<decltype(&::name)>(libavFunction(#name))
    // libavutil
    TARNWICK_FUNCTION(av_buffer_create);
    TARNWICK_FUNCTION(av_calloc);
    TARNWICK_FUNCTION(av_channel_layout_copy);
    TARNWICK_FUNCTION(av_channel_layout_default);
    TARNWICK_FUNCTION(av_dict_free);
    TARNWICK_FUNCTION(av_dict_get);
    TARNWICK_FUNCTION(av_dict_parse_string);
    TARNWICK_FUNCTION(av_dict_set);
    TARNWICK_FUNCTION(av_dict_set_int);
    TARNWICK_FUNCTION(av_display_rotation_get);
    TARNWICK_FUNCTION(av_frame_alloc);
    TARNWICK_FUNCTION(av_frame_free);
    TARNWICK_FUNCTION(av_frame_get_buffer);
    TARNWICK_FUNCTION(av_frame_get_side_data);
    TARNWICK_FUNCTION(av_frame_unref);
    TARNWICK_FUNCTION(av_get_bytes_per_sample);
    TARNWICK_FUNCTION(av_get_pix_fmt);
    TARNWICK_FUNCTION(av_log_set_callback);
    TARNWICK_FUNCTION(av_log_set_level);
    TARNWICK_FUNCTION(av_mallocz);
    TARNWICK_FUNCTION(av_rescale);
    TARNWICK_FUNCTION(av_rescale_q);
    TARNWICK_FUNCTION(av_sample_fmt_is_planar);
    TARNWICK_FUNCTION(av_strerror);
    // libavcodec
    TARNWICK_FUNCTION(av_new_packet);
    TARNWICK_FUNCTION(av_packet_alloc);
    TARNWICK_FUNCTION(av_packet_free);
    TARNWICK_FUNCTION(av_packet_get_side_data);
    TARNWICK_FUNCTION(av_packet_rescale_ts);
    TARNWICK_FUNCTION(av_packet_unref);
    TARNWICK_FUNCTION(avcodec_alloc_context3);
    TARNWICK_FUNCTION(avcodec_find_decoder);
    TARNWICK_FUNCTION(avcodec_find_decoder_by_name);
    TARNWICK_FUNCTION(avcodec_find_encoder_by_name);
    TARNWICK_FUNCTION(avcodec_flush_buffers);
    TARNWICK_FUNCTION(avcodec_free_context);
    TARNWICK_FUNCTION(avcodec_open2);
    TARNWICK_FUNCTION(avcodec_parameters_free);
    TARNWICK_FUNCTION(avcodec_parameters_to_context);
    TARNWICK_FUNCTION(avcodec_receive_frame);
    TARNWICK_FUNCTION(avcodec_receive_packet);
    TARNWICK_FUNCTION(avcodec_send_frame);
    TARNWICK_FUNCTION(avcodec_send_packet);
    TARNWICK_FUNCTION(avcodec_version);
    // libavformat
    TARNWICK_FUNCTION(av_find_best_stream);
    TARNWICK_FUNCTION(av_find_input_format);
    TARNWICK_FUNCTION(av_guess_frame_rate);
    TARNWICK_FUNCTION(av_index_search_timestamp);
    TARNWICK_FUNCTION(av_read_frame);
    TARNWICK_FUNCTION(av_seek_frame);
    TARNWICK_FUNCTION(av_stream_get_side_data);
    TARNWICK_FUNCTION(av_write_frame);
    TARNWICK_FUNCTION(av_write_trailer);
    TARNWICK_FUNCTION(avformat_alloc_context);
    TARNWICK_FUNCTION(avformat_alloc_output_context2);
    TARNWICK_FUNCTION(avformat_close_input);
    TARNWICK_FUNCTION(avformat_find_stream_info);
    TARNWICK_FUNCTION(avformat_free_context);
    TARNWICK_FUNCTION(avformat_index_get_entries_count);
    TARNWICK_FUNCTION(avformat_index_get_entry);
    TARNWICK_FUNCTION(avformat_new_stream);
    TARNWICK_FUNCTION(avformat_open_input);
    TARNWICK_FUNCTION(avformat_write_header);
    TARNWICK_FUNCTION(avio_closep);
    TARNWICK_FUNCTION(avio_flush);
    TARNWICK_FUNCTION(avio_open);
    TARNWICK_FUNCTION(avio_size);
    // libswresample
    TARNWICK_FUNCTION(swr_alloc_set_opts2);
    TARNWICK_FUNCTION(swr_convert);
    TARNWICK_FUNCTION(swr_free);
    TARNWICK_FUNCTION(swr_get_out_samples);
    TARNWICK_FUNCTION(swr_init);
    // libswscale
    TARNWICK_FUNCTION(sws_freeContext);
    TARNWICK_FUNCTION(sws_getCachedContext);
    TARNWICK_FUNCTION(sws_getCoefficients);
    TARNWICK_FUNCTION(sws_getContext);
    TARNWICK_FUNCTION(sws_scale);
    TARNWICK_FUNCTION(sws_setColorspaceDetails);
#undef TARNWICK_FUNCTION
};

// From any thread. Throws LibavError.
const LibavFunctions& libav();

// Loads the libraries, with an error of the caller's own type if they cannot be.
template <typename Error> void loadLibav() {
    try {
        libav();
    } catch (const LibavError& error) {
        throw Error(error.what());
    }
}

// Makes the cameras known to libavformat. Throws LibavError.
void registerLibavDevices();

} // namespace tarnwick
