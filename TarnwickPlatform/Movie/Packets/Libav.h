// Private to this folder: owners for libav's objects, and its words for what fails.
#pragma once

#include "TarnwickPlatform/Movie/MovieError.h"

#include <functional>
#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace tarnwick {

struct LibavDeleter {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
};
template <typename Object> using LibavOwner = std::unique_ptr<Object, LibavDeleter>;

// What the libraries say goes nowhere from now on, but the calling thread's last complaint is kept
// for libavWords. Takes effect once for the process.
void catchLibavWords();

// Why a call gave `error`: what the library complained about on this thread since the last call of
// catchLibavWords or libavWords, or else the system's words for the number.
std::string libavWords(int error);

// Throws MovieError with libavWords where `result` is negative.
int throwingWhenNegative(int result);

// Frees nothing, throws MovieError("Cannot allocate memory") where `object` is null.
template <typename Object> Object* throwingWhenNull(Object* object) {
    throwingWhenNegative(object ? 0 : AVERROR(ENOMEM));
    return object;
}

// Throws MovieError where this build of libavcodec does not have the encoder.
const AVCodec& encoderNamed(const char* name);

// Gives every packet that the encoder has ready. Throws MovieError.
void takePackets(AVCodecContext& encoder, const std::function<void(const AVPacket&)>& take);

} // namespace tarnwick
