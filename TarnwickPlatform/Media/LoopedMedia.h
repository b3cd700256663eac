// The pictures of a picture file, or of a movie file that plays in a loop.
#pragma once

#include "TarnwickPlatform/Media/MediaReader.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// The longest sides of pictures that episodes read, in pixels; larger ones are scaled down.
inline constexpr std::uint32_t longestStill = 4096; // of a picture file
inline constexpr std::uint32_t longestMoving =
    1920; // of movies and cameras, which are copied often

// One thread at a time. Functions block and throw MediaError. The same time gives the same picture,
// whatever was shown before.
class LoopedMedia {
  public:
    // `isEnd`, unless empty, is called while a function blocks; true ends it with MediaError.
    static std::unique_ptr<LoopedMedia> open(const std::filesystem::path& file,
                                             const std::function<bool()>& isEnd = {});

    // Goes to the frame at `time` seconds, modulo the movie's length: the last one that begins at
    // or before it. False if that is the present frame; true at first. `isStale`, unless empty, is
    // asked after each frame on the way; true ends it there.
    bool goTo(double time, const std::function<bool()>& isStale = {});
    void readPicture(Picture& picture) { reader_->readPicture(picture); }

  private:
    LoopedMedia(std::filesystem::path file, std::unique_ptr<MediaReader> reader);
    double within(double time) const;
    bool isSeekWanted(double at) const;
    void seek(double at);
    void readFirst();
    bool passes(double at, const std::function<bool()>& isStale);

    std::filesystem::path file_;
    std::unique_ptr<MediaReader> reader_;
    std::optional<double> length_; // seconds; absent: not known before the end was read
    bool hasFrame_ = false;
};

} // namespace tarnwick
