#include "player/Thumbnails/ThumbnailQueue.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tarnwick::player {

void ThumbnailQueue::ask(ThumbnailRequest request) {
    const std::lock_guard lock(mutex_);
    std::erase_if(waiting_,
                  [&](const ThumbnailTask& task) { return task.request.id == request.id; });
    waiting_.push_back({.request = std::move(request), .serial = ++lastSerial_});
    changed_.notify_one();
}

void ThumbnailQueue::cancel(std::uint64_t id) {
    const std::lock_guard lock(mutex_);
    std::erase_if(waiting_, [&](const ThumbnailTask& task) { return task.request.id == id; });
}

void ThumbnailQueue::end() {
    const std::lock_guard lock(mutex_);
    isEnd_ = true;
    waiting_.clear();
    changed_.notify_all();
}

bool ThumbnailQueue::isEnd() const {
    const std::lock_guard lock(mutex_);
    return isEnd_;
}

std::optional<ThumbnailTask> ThumbnailQueue::take(double seconds) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::duration<double>(seconds),
                      [this] { return isEnd_ || !waiting_.empty(); });
    const auto first = std::ranges::min_element(
        waiting_, {}, [](const ThumbnailTask& task) { return task.request.rank; });
    return first == waiting_.end() ? std::nullopt : std::optional(*first);
}

std::vector<ThumbnailTask>::iterator ThumbnailQueue::placeOf(std::uint64_t serial) {
    return std::ranges::find(waiting_, serial, &ThumbnailTask::serial);
}

bool ThumbnailQueue::isWanted(const ThumbnailTask& task) const {
    const std::lock_guard lock(mutex_);
    return std::ranges::find(waiting_, task.serial, &ThumbnailTask::serial) != waiting_.end();
}

void ThumbnailQueue::done(const ThumbnailTask& task) {
    const std::lock_guard lock(mutex_);
    const auto place = placeOf(task.serial);
    if (place != waiting_.end() && ++place->frame >= place->request.frames)
        waiting_.erase(place);
}

void ThumbnailQueue::drop(const ThumbnailTask& task) {
    const std::lock_guard lock(mutex_);
    if (const auto place = placeOf(task.serial); place != waiting_.end())
        waiting_.erase(place);
}

void ThumbnailQueue::rest(double seconds) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return isEnd_; });
}

} // namespace tarnwick::player
