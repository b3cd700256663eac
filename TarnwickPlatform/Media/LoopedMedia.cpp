#include "TarnwickPlatform/Media/LoopedMedia.h"

#include <cmath>
#include <utility>

namespace tarnwick {
namespace {

constexpr double rounding = 1e-4; // seconds; times of frames are rounded in files
constexpr double farAhead = 0.5;  // seconds up to which reading on costs less than a seek

} // namespace

std::unique_ptr<LoopedMedia> LoopedMedia::open(const std::filesystem::path& file,
                                               const std::function<bool()>& isEnd) {
    auto reader = MediaReader::openFile(file, {.longestSide = longestStill, .isEnd = isEnd});
    if (!reader->isStill())
        reader = MediaReader::openFile(file, {.longestSide = longestMoving, .isEnd = isEnd});
    return std::unique_ptr<LoopedMedia>(new LoopedMedia(file, std::move(reader)));
}

LoopedMedia::LoopedMedia(std::filesystem::path file, std::unique_ptr<MediaReader> reader)
    : file_(std::move(file)), reader_(std::move(reader)), length_(reader_->duration()) {}

double LoopedMedia::within(double time) const {
    if (!length_ || !(*length_ > 0))
        return time;
    const double at = std::fmod(time, *length_);
    return at < 0 ? at + *length_ : at;
}

bool LoopedMedia::goTo(double time, const std::function<bool()>& isStale) {
    bool isMoved = !hasFrame_;
    if (isMoved)
        readFirst();
    if (reader_->isStill())
        return isMoved;
    const double at = within(time) + rounding;
    if (isSeekWanted(at)) {
        seek(at);
        isMoved = true;
    }
    isMoved |= passes(at, isStale);
    if (length_ || reader_->nextTime())
        return isMoved;
    length_ = reader_->time() + reader_->frameDuration(); // the end was read: now it is known
    return goTo(time, isStale) || isMoved;
}

void LoopedMedia::readFirst() {
    if (!reader_->next())
        throw MediaError(file_.string() + " cannot be read: it has no pictures.");
    hasFrame_ = true;
}

bool LoopedMedia::isSeekWanted(double at) const {
    if (at < reader_->time())
        return reader_->time() > 0;
    return at - reader_->time() > farAhead && reader_->seekIsAhead(at);
}

// Some files have no exact index: a seek that ends after the wanted frame is one to the first.
void LoopedMedia::seek(double at) {
    reader_->seek(at);
    readFirst();
    if (reader_->time() <= at)
        return;
    reader_->seek(0);
    readFirst();
}

// Reads up to the frame of `at`. Returns whether it read one.
bool LoopedMedia::passes(double at, const std::function<bool()>& isStale) {
    bool isMoved = false;
    for (auto next = reader_->nextTime(); next && *next <= at && !(isStale && isStale());
         next = reader_->nextTime())
        isMoved |= reader_->next();
    return isMoved;
}

} // namespace tarnwick
