// The inputs of a movie that is being written: one for each track.
#pragma once

#include "TarnwickPlatform/Movie/MediaTime.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <memory>
#include <span>
#include <string_view>

namespace tarnwick {

// The input of one track. One thread appends; any thread may make the other calls. The writer owns
// it.
class MovieInput {
  public:
    virtual ~MovieInput() = default;

    virtual std::string_view mediaType() const = 0; // "vide" or "soun"

    // Whether append would accept a buffer now. False while the queue is full, before the session
    // starts, after markAsFinished, and after the writer failed or was cancelled.
    virtual bool isReadyForMoreMediaData() const = 0;

    // Ends this track. The writer finishes it while others go on.
    virtual void markAsFinished() = 0;
};

class VideoInput : public MovieInput {
  public:
    // A pool of buffers of the settings' size, owned by the input. Null before startWriting
    // succeeds.
    virtual PixelBufferPool* pixelBufferPool() = 0;

    // Queues a picture. `time` is i / framesPerSecond, with this timescale; i begins at the
    // session's start and increases by 1. The buffer has the settings' size and is bgra or in the
    // encoder's format, from the pool or the caller's own; the caller does not write to it any
    // more. False, without effect: the input is not ready, or the buffer or time is invalid. A
    // wrong time also makes the writer fail. Never blocks.
    virtual bool append(std::shared_ptr<const PixelBuffer> buffer, MediaTime time) = 0;
};

class AudioInput : public MovieInput {
  public:
    // Queues a copy of samples in [-1, 1], left and right interleaved. `time` is that of the first
    // sample: value the sample's number, timescale the sample rate. The first call begins at minus
    // the settings' leadIn, each later one where the last ended. Otherwise as VideoInput::append.
    virtual bool append(std::span<const float> samples, MediaTime time) = 0;
};

enum class MovieWriterStatus { unknown, writing, completed, failed, cancelled };

} // namespace tarnwick
