#include "TarnwickPlatform/Movie/Writing/FileVideoInput.h"

#include "TarnwickPlatform/Movie/ColorConversion.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <limits>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t queuedFrames = 3;
constexpr std::size_t queuedPictures = 2;

} // namespace

FileVideoInput::FileVideoInput(const VideoSettings& settings, WriterState& state)
    : settings(settings), state(state), frames(queuedFrames), pictures(queuedPictures) {}

void FileVideoInput::makePool() {
    // Buffers of pixels return after conversion; converted buffers return after encoding.
    constexpr std::int64_t held = queuedFrames + 1;
    constexpr std::int64_t heldByEncoder = queuedPictures + 20;
    const bool converted = settings.source == VideoSettings::Source::converted;
    pool = std::make_unique<PixelBufferPool>(
        converted ? videoCodecRow(settings.codec).pixelFormat : PixelFormat::bgra, settings.width,
        settings.height, settings.framesInHand + held + (converted ? heldByEncoder : 0),
        settings.allocate);
}

void FileVideoInput::begin(std::int64_t frame) {
    nextFrame = frame;
    begun = true;
}

bool FileVideoInput::append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) {
    if (!isReadyForMoreMediaData())
        return false;
    const bool fits = buffer && buffer->width() == settings.width &&
                      buffer->height() == settings.height &&
                      (buffer->format() == PixelFormat::bgra ||
                       buffer->format() == videoCodecRow(settings.codec).pixelFormat);
    if (!fits)
        return false;
    if (time != MediaTime{nextFrame, static_cast<std::int32_t>(settings.framesPerSecond)}) {
        state.fail("A picture was appended out of its order.");
        return false;
    }
    if (!frames.tryPush({std::move(buffer), nextFrame}))
        return false;
    ++nextFrame;
    return true;
}

void FileVideoInput::convertFrames() {
    // Its size is limited by the queue and by the pictures that the encoder holds.
    PixelBufferPool converted(videoCodecRow(settings.codec).pixelFormat, settings.width,
                              settings.height, std::numeric_limits<std::int64_t>::max());
    while (std::optional<QueuedFrame> frame = frames.pop()) {
        if (frame->picture->format() == PixelFormat::bgra) {
            std::shared_ptr<PixelBuffer> picture = converted.take();
            if (!picture)
                throw MovieError("Cannot allocate memory");
            convertColors(*frame->picture, *picture);
            frame->picture = std::move(picture);
        }
        if (!pictures.push(std::move(*frame)))
            return;
    }
    pictures.finish();
}

void FileVideoInput::encodePictures(const VideoPacketSink& sink) {
    while (std::optional<QueuedFrame> picture = pictures.pop())
        encoder->encode(std::move(picture->picture), picture->frame, sink);
    if (state.status() == MovieWriterStatus::writing)
        encoder->finish(sink);
}

} // namespace tarnwick
