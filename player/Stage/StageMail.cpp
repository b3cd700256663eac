#include "player/Stage/StageMail.h"

#include <chrono>
#include <utility>

namespace tarnwick::player {

void StageMail::show(std::shared_ptr<const StageRecord> record) {
    const std::lock_guard lock(mutex_);
    waiting_.record = std::move(record);
    isNew_ = true;
    changed_.notify_one();
}

void StageMail::ask(Request request) {
    const std::lock_guard lock(mutex_);
    waiting_.requests.push_back(std::move(request));
    isNew_ = true;
    changed_.notify_one();
}

void StageMail::end() {
    const std::lock_guard lock(mutex_);
    waiting_.isEnd = isNew_ = true;
    changed_.notify_one();
}

StageMail::Delivery StageMail::take(double seconds) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return isNew_; });
    isNew_ = false;
    return {waiting_.record, std::exchange(waiting_.requests, {}), waiting_.isEnd};
}

bool StageMail::hasNews() const {
    const std::lock_guard lock(mutex_);
    return isNew_;
}

bool StageMail::isEnd() const {
    const std::lock_guard lock(mutex_);
    return waiting_.isEnd;
}

} // namespace tarnwick::player
