// The frames of a movie that plays in a loop.
#pragma once

#include "TarnwickPlatform/Media/MediaReader.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarnwick::player {

// One thread at a time. Functions block and throw MediaError.
class MovieFrames {
  public:
    explicit MovieFrames(std::unique_ptr<MediaReader> reader);

    // Goes to the frame at `time` seconds, modulo the movie's length: the last one that begins at
    // or before it. False if that is the present frame. `isStale` is asked after each frame on the
    // way; true ends it there.
    bool goTo(double time, const std::function<bool()>& isStale);
    void readPicture(Picture& picture) { reader_->readPicture(picture); }

  private:
    double within(double time) const;
    bool passes(double at, const std::function<bool()>& isStale);

    std::unique_ptr<MediaReader> reader_;
    std::optional<double> length_; // seconds; absent: not known before the end was read
    bool hasFrame_ = false;
};

} // namespace tarnwick::player
