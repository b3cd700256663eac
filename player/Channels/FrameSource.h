// A source of pictures for a channel of an episode: a picture file, a movie file or a camera.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace tarnwick::player {

enum class SourceKind : std::uint8_t { file, camera };

// Its pictures are read and converted on a thread of its own. Any thread may call its functions;
// only reach() waits for that thread.
class FrameSource {
  public:
    // `tell` is called on the source's thread with a sentence when the source cannot be read.
    using Tell = std::function<void(const std::string&)>;

    FrameSource(SourceKind kind, std::filesystem::path place, Tell tell);
    // No call of `tell` begins afterwards. The thread ends by itself.
    ~FrameSource();
    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;

    struct Frame {
        std::shared_ptr<const Picture> picture; // null before the first
        std::uint64_t number = 0;               // grows with each picture
    };
    Frame newest() const;
    std::uint64_t number() const; // of newest()

    // A movie shows its frame at `time` seconds of the episode, modulo its length, as soon as it is
    // read. Others ignore it.
    void follow(double time);

    // Follows `time` and waits until newest() is the frame of that time, at most so long. True if
    // it is, and for sources without such frames: a camera, and a file that cannot be read.
    bool reach(double time, std::chrono::milliseconds longest);

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_; // shared with the thread, which may be in a long read
};

} // namespace tarnwick::player
