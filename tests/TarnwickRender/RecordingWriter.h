// A writer that keeps what it is given, and fails as a test wants it to.
#pragma once

#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <vector>

namespace tarnwick::tests {

// What a test says and learns; outlives the writer.
struct Recording {
    // How the writer behaves.
    bool takesVideo = true, takesAudio = true, starts = true, hasPool = true, hasBuffers = true;
    bool videoIsReady = true, audioIsReady = true;
    std::int64_t refusesFrame = -1; // append gives false
    std::int64_t refusesSample = -1;
    std::int64_t failsAtFrame = -1; // the writer fails, with `error`
    bool failsAtEnd = false;
    std::optional<std::string> error = "No space left on device";

    // What it was given.
    std::optional<VideoSettings> video{};
    MovieFileType type = MovieFileType::mpeg4;
    std::vector<Picture> pictures{};
    std::vector<std::int64_t> times{}; // of the pictures, in frames
    AudioSettings sound{};
    std::vector<float> samples{}; // left, right, left, right, from the lead-in on
    MovieWriterStatus status = MovieWriterStatus::unknown;
    bool hasSound = false, isFinished = false;
};

MovieWriterFactory recordingWriters(Recording& recording);

} // namespace tarnwick::tests
