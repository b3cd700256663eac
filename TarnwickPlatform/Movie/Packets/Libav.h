// Owners of libav's objects, and its messages as errors.
#pragma once

#include "TarnwickPlatform/Libav/Libav.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <functional>
#include <memory>
#include <string>

namespace tarnwick {

struct LibavDeleter {
    void operator()(AVCodecContext* context) const { libav().avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { libav().av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { libav().av_packet_free(&packet); }
    void operator()(AVCodecParameters* parameters) const {
        libav().avcodec_parameters_free(&parameters);
    }
};
template <typename Object> using LibavOwner = std::unique_ptr<Object, LibavDeleter>;

// Suppresses the messages of the libraries, and deletes the last message of the calling thread
// (libavWords). The first call takes effect for the process. Throws MovieError if the libraries
// cannot be loaded.
void catchLibavWords();

// The reason of `error`: the library's last message on this thread since the last call of
// catchLibavWords or libavWords, otherwise the system's words for the number.
std::string libavWords(int error);

// Throws MovieError with libavWords if `result` is negative.
int throwingWhenNegative(int result);

// Throws MovieError("Cannot allocate memory") if `object` is null; otherwise returns it.
template <typename Object> Object* throwingWhenNull(Object* object) {
    throwingWhenNegative(object ? 0 : AVERROR(ENOMEM));
    return object;
}

// Throws MovieError if this build of libavcodec does not have the encoder.
const AVCodec& encoderNamed(const char* name);

// Gives every packet that the encoder has ready. Throws MovieError.
void takePackets(AVCodecContext& encoder, const std::function<void(const AVPacket&)>& take);

} // namespace tarnwick
