// The tracks of a movie that is being written, as its writer's caller sees them.
#pragma once

#include "TarnwickPlatform/Movie/MediaTime.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <memory>
#include <span>
#include <string_view>

namespace tarnwick {

// A track's way in. One thread appends; the other calls come from any thread. Belongs to its
// writer.
class MovieInput {
  public:
    virtual ~MovieInput() = default;

    virtual std::string_view mediaType() const = 0; // "vide" or "soun"

    // Whether append would queue without growing past the bounded queue: false while that is full,
    // before the session starts and after the input was marked as finished. A writer that failed or
    // was cancelled is not ready either.
    virtual bool isReadyForMoreMediaData() const = 0;

    // No more is coming: lets the writer finish this track while others go on.
    virtual void markAsFinished() = 0;
};

class VideoInput : public MovieInput {
  public:
    // Buffers of the settings' size. Null before startWriting succeeds. Lives as long as the
    // writer.
    virtual PixelBufferPool* pixelBufferPool() = 0;

    // Queues a picture, in the order of times: value i, timescale the frames a second, i from the
    // session's start up without gaps. The buffer is of the settings' size, as bgra or in the
    // encoder's format, from the pool or the caller's own, and not to be written any more. False,
    // without effect: the input is not ready or the picture is another than the above; a picture
    // that breaks the order also makes the writer fail. Never blocks.
    virtual bool append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) = 0;
};

class AudioInput : public MovieInput {
  public:
    // Queues samples in [-1, 1], left and right by turns, that begin at `time`: value the sample's
    // number, timescale the sample rate, the first call at minus the settings' leadIn, each other
    // where the last ended. Copies them. Otherwise as VideoInput::append.
    virtual bool append(std::span<const float> samples, MediaTime time) = 0;
};

enum class MovieWriterStatus { unknown, writing, completed, failed, cancelled };

} // namespace tarnwick
