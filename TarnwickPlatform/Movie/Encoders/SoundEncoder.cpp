#include "TarnwickPlatform/Movie/Encoders/SoundEncoder.h"

#include "TarnwickPlatform/Movie/Packets/Libav.h"

#include <algorithm>
#include <limits>

namespace tarnwick {

struct SoundEncoder::Session {
    LibavOwner<AVCodecContext> context;
    std::vector<float> waiting{}; // interleaved samples, less than a packet
    std::int64_t leadIn = 0;      // samples of a channel, as below
    std::int64_t sent = 0;        // first sample of the next packet
    std::int64_t end = std::numeric_limits<std::int64_t>::max(); // of the heard samples

    void send(std::span<const float> samples, const SoundPacketSink& sink);
    void drain(const SoundPacketSink& sink);
};

SoundEncoder::SoundEncoder(const AudioSettings& settings) : session(std::make_unique<Session>()) {
    catchLibavWords();
    session->leadIn = settings.leadIn;
    session->sent = -settings.leadIn;
    session->end = settings.length.value_or(session->end);
    const AVCodec* codec = libav().avcodec_find_encoder_by_name("aac");
    if (!codec)
        throw MovieError("Encoder not found: aac");
    session->context.reset(throwingWhenNull(libav().avcodec_alloc_context3(codec)));
    AVCodecContext& context = *session->context;
    context.sample_rate = static_cast<int>(settings.sampleRate);
    context.time_base = {1, context.sample_rate};
    context.bit_rate = settings.bitRate;
    context.sample_fmt = AV_SAMPLE_FMT_FLTP;
    libav().av_channel_layout_default(&context.ch_layout, static_cast<int>(settings.channels));
    context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    throwingWhenNegative(libav().avcodec_open2(&context, codec, nullptr));
}

SoundEncoder::~SoundEncoder() = default;

void SoundEncoder::encode(std::span<const float> samples, const SoundPacketSink& sink) {
    catchLibavWords();
    std::vector<float>& waiting = session->waiting;
    waiting.insert(waiting.end(), samples.begin(), samples.end());
    const std::size_t packet = static_cast<std::size_t>(session->context->frame_size) *
                               static_cast<std::size_t>(session->context->ch_layout.nb_channels);
    std::size_t begin = 0;
    for (; waiting.size() - begin >= packet; begin += packet)
        session->send(std::span(waiting).subspan(begin, packet), sink);
    waiting.erase(waiting.begin(), waiting.begin() + static_cast<std::ptrdiff_t>(begin));
}

void SoundEncoder::finish(const SoundPacketSink& sink) {
    catchLibavWords();
    if (!session->waiting.empty())
        session->send(session->waiting, sink);
    throwingWhenNegative(libav().avcodec_send_frame(session->context.get(), nullptr));
    session->drain(sink);
}

void SoundEncoder::Session::send(std::span<const float> samples, const SoundPacketSink& sink) {
    const auto channels = static_cast<std::size_t>(context->ch_layout.nb_channels);
    const std::size_t count = samples.size() / channels;
    LibavOwner<AVFrame> frame(throwingWhenNull(libav().av_frame_alloc()));
    frame->format = context->sample_fmt;
    frame->nb_samples = static_cast<int>(count);
    frame->pts = sent;
    throwingWhenNegative(libav().av_channel_layout_copy(&frame->ch_layout, &context->ch_layout));
    throwingWhenNegative(libav().av_frame_get_buffer(frame.get(), 0));
    for (std::size_t channel = 0; channel < channels; ++channel) {
        auto* plane = reinterpret_cast<float*>(frame->extended_data[channel]);
        for (std::size_t index = 0; index < count; ++index)
            plane[index] = samples[index * channels + channel];
    }
    sent += static_cast<std::int64_t>(count);
    throwingWhenNegative(libav().avcodec_send_frame(context.get(), frame.get()));
    drain(sink);
}

void SoundEncoder::Session::drain(const SoundPacketSink& sink) {
    takePackets(*context, [&](const AVPacket& packet) {
        if (packet.pts >= end)
            return;
        const auto* bytes = reinterpret_cast<const std::byte*>(packet.data);
        sink({.bytes = {bytes, bytes + packet.size},
              .sample = packet.pts,
              // Priming comes before zero, and `end` may be the largest number: no difference of
              // them.
              .duration = packet.pts > end - packet.duration ? end - packet.pts : packet.duration});
    });
}

SoundFormat SoundEncoder::format() const {
    const AVCodecContext& context = *session->context;
    const auto* bytes = reinterpret_cast<const std::byte*>(context.extradata);
    return {.configuration = {bytes, bytes + context.extradata_size},
            .priming = context.initial_padding + session->leadIn,
            .samplesPerPacket = context.frame_size};
}

} // namespace tarnwick
