#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace tarnwick {

namespace {

// The library logs on the thread that called it, so each thread has its own message.
thread_local std::string lastComplaint;

void keepComplaint(void*, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR)
        return;
    std::array<char, 512> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    lastComplaint = text.data();
    while (!lastComplaint.empty() && lastComplaint.back() == '\n')
        lastComplaint.pop_back();
}

} // namespace

void catchLibavWords() {
    loadLibav<MovieError>();
    static std::once_flag once;
    std::call_once(once, [] { libav().av_log_set_callback(keepComplaint); });
    lastComplaint.clear();
}

std::string libavWords(int error) {
    std::string words;
    words.swap(lastComplaint);
    const bool saysLittle = error == AVERROR(EINVAL) || error == AVERROR_EXTERNAL ||
                            error == AVERROR_INVALIDDATA || error == AVERROR_UNKNOWN;
    if (!words.empty() && saysLittle)
        return words;
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    libav().av_strerror(error, text.data(), text.size());
    return text.data();
}

int throwingWhenNegative(int result) {
    if (result < 0)
        throw MovieError(libavWords(result));
    return result;
}

const AVCodec& encoderNamed(const char* name) {
    loadLibav<MovieError>();
    const AVCodec* codec = libav().avcodec_find_encoder_by_name(name);
    if (!codec)
        throw MovieError(std::string("Encoder not found: ") + name);
    return *codec;
}

void takePackets(AVCodecContext& encoder, const std::function<void(const AVPacket&)>& take) {
    const LibavOwner<AVPacket> packet(throwingWhenNull(libav().av_packet_alloc()));
    for (;;) {
        const int received = libav().avcodec_receive_packet(&encoder, packet.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            return;
        throwingWhenNegative(received);
        take(*packet);
        libav().av_packet_unref(packet.get());
    }
}

} // namespace tarnwick
