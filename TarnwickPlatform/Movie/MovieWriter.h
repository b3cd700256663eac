// Writes a movie file: frames and samples go in, each with its time; encoding and writing run on
// the writer's own threads, so that a caller draws the next frame meanwhile.
//
//   auto writer = MovieWriter::make(path, MovieFileType::mpeg4);
//   VideoInput* video = writer->add(videoSettings);      // null: errorText() says why
//   writer->startWriting(); writer->startSession({0, 60});
//   for each frame: buffer = video->pixelBufferPool()->take(); draw into it;
//                   wait until video->isReadyForMoreMediaData();
//                   video->append(std::move(buffer), {i, 60});
//   video->markAsFinished(); writer->finishWriting();
//
// The interfaces are abstract so that tests
// can stand in writers that never become ready or fail.
#pragma once

#include "TarnwickPlatform/Movie/MediaTime.h"
#include "TarnwickPlatform/Movie/MovieInput.h"
#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The calls of one writer come from one thread, but status, errorText and cancelWriting from any.
// Destroying a writer that is writing cancels it.
class MovieWriter {
  public:
    // Makes nothing on disk yet.
    static std::unique_ptr<MovieWriter> make(std::filesystem::path file, MovieFileType type);

    virtual ~MovieWriter() = default;

    // Adds the one picture or sound track, before startWriting. Null, with the reason as errorText,
    // when there is one already or the file type or the codec does not take what is asked for.
    virtual VideoInput* add(const VideoSettings& settings) = 0;
    virtual AudioInput* add(const AudioSettings& settings) = 0;

    // Chapters of the file, in the order of their starts; at any time before finishWriting.
    virtual void setChapters(std::vector<MovieChapter> chapters) = 0;

    // Makes the encoders and the file, in place of one that is there. False: status is failed.
    virtual bool startWriting() = 0;

    // The time at which the file begins: 0, or the first frame of a part of a movie, at which a
    // stretch begins (stretchLength). Value and timescale as in VideoInput::append.
    virtual void startSession(MediaTime start) = 0;

    virtual MovieWriterStatus status() const = 0;

    // Why the writer failed or an input could not be added, in the system's or the codec's own
    // words ("No space left on device"); nothing where neither is the case.
    virtual std::optional<std::string> errorText() const = 0;

    // Waits until all that was appended is encoded and written and the file is complete, which may
    // take long. Then status is completed or failed. Marks what was not as finished.
    virtual void finishWriting() = 0;

    // Stops as soon as the encoder has done its frame, waits for that, and leaves the incomplete
    // file. Without effect after finishWriting.
    virtual void cancelWriting() = 0;
};

// What makes writers, for callers that are to work with others than MovieWriter::make's.
using MovieWriterFactory =
    std::function<std::unique_ptr<MovieWriter>(const std::filesystem::path&, MovieFileType)>;

} // namespace tarnwick
