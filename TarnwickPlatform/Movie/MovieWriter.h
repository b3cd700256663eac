// Writes a movie file: the caller appends frames and samples, each with its time. Encoding and
// writing run on the writer's own threads, so the caller draws the next frame meanwhile.
//
//   auto writer = MovieWriter::make(path, MovieFileType::mpeg4);
//   VideoInput* video = writer->add(videoSettings);      // null: errorText() says why
//   writer->startWriting(); writer->startSession({0, 60});
//   for each frame: buffer = video->pixelBufferPool()->take(); draw into it;
//                   wait until video->isReadyForMoreMediaData();
//                   video->append(std::move(buffer), {i, 60});
//   video->markAsFinished(); writer->finishWriting();
//
// The interfaces are abstract, so that tests can replace the writer by one that is never ready or
// fails.
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

// One thread calls; any thread may call status, errorText and cancelWriting. Destroying a writer
// that is writing cancels it.
class MovieWriter {
  public:
    // Does not create the file yet.
    static std::unique_ptr<MovieWriter> make(std::filesystem::path file, MovieFileType type);

    virtual ~MovieWriter() = default;

    // Adds the one picture or sound track, before startWriting. Null, with the reason in errorText,
    // if the track exists already or the settings are invalid (settingsError). The writer owns the
    // input.
    virtual VideoInput* add(const VideoSettings& settings) = 0;
    virtual AudioInput* add(const AudioSettings& settings) = 0;

    // Sets the chapters of the file, in the order of their starts. May be called at any time before
    // finishWriting.
    virtual void setChapters(std::vector<MovieChapter> chapters) = 0;

    // Makes the encoders and the file; an existing file is replaced. False: status is failed.
    virtual bool startWriting() = 0;

    // Sets the time at which the file begins: 0, or the first frame of a part of a movie, which is
    // a multiple of stretchLength. Value and timescale as in VideoInput::append.
    virtual void startSession(MediaTime start) = 0;

    // Any thread of the writer may set `failed`.
    virtual MovieWriterStatus status() const = 0;

    // Why the writer failed or an input could not be added, in the words of the system or the codec
    // ("No space left on device"); absent if neither is the case.
    virtual std::optional<std::string> errorText() const = 0;

    // Marks all inputs as finished and blocks until everything appended is encoded and written and
    // the file is complete, which may take minutes. Status is completed or failed afterwards.
    virtual void finishWriting() = 0;

    // Blocks until the encoder has finished its current frame, then stops. The incomplete file
    // remains. No effect after finishWriting.
    virtual void cancelWriting() = 0;
};

// Makes writers: MovieWriter::make, or a replacement for tests.
using MovieWriterFactory =
    std::function<std::unique_ptr<MovieWriter>(const std::filesystem::path&, MovieFileType)>;

} // namespace tarnwick
