#include "player/Channels/MovieFrames.h"

#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double rounding = 1e-4; // seconds; times of frames are rounded in files

} // namespace

MovieFrames::MovieFrames(std::unique_ptr<MediaReader> reader)
    : reader_(std::move(reader)), length_(reader_->duration()) {}

double MovieFrames::within(double time) const {
    return length_ && *length_ > 0 ? std::fmod(time, *length_) : time;
}

bool MovieFrames::goTo(double time, const std::function<bool()>& isStale) {
    const double at = within(time) + rounding;
    bool isMoved = false;
    if (!hasFrame_ || at < reader_->time() || reader_->seekIsAhead(at)) {
        if (hasFrame_)
            reader_->seek(at);
        if (!reader_->next())
            return false;
        hasFrame_ = isMoved = true;
    }
    isMoved |= passes(at, isStale);
    if (length_ || reader_->nextTime())
        return isMoved;
    length_ = reader_->time() + reader_->frameDuration(); // the end was read: now it is known
    return goTo(time, isStale) || isMoved;
}

// Reads up to the frame of `at`. Returns whether it read one.
bool MovieFrames::passes(double at, const std::function<bool()>& isStale) {
    bool isMoved = false;
    for (auto next = reader_->nextTime(); next && *next <= at && !isStale();
         next = reader_->nextTime())
        isMoved |= reader_->next();
    return isMoved;
}

} // namespace tarnwick::player
