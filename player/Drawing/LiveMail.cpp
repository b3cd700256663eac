#include "player/Drawing/LiveMail.h"

#include <chrono>
#include <utility>

namespace tarnwick::player {

void LiveMail::show(std::shared_ptr<const LiveRecord> record) {
    const std::lock_guard lock(mutex_);
    waiting_.record = std::move(record);
    isNew_ = true;
    changed_.notify_one();
}

void LiveMail::ask(Request request) {
    const std::lock_guard lock(mutex_);
    waiting_.requests.push_back(std::move(request));
    isNew_ = true;
    changed_.notify_one();
}

void LiveMail::end() {
    const std::lock_guard lock(mutex_);
    waiting_.isEnd = isNew_ = true;
    changed_.notify_one();
}

LiveMail::Delivery LiveMail::take(double seconds) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return isNew_; });
    isNew_ = false;
    return {waiting_.record, std::exchange(waiting_.requests, {}), waiting_.isEnd};
}

bool LiveMail::hasNews() const {
    const std::lock_guard lock(mutex_);
    return isNew_;
}

bool LiveMail::isEnd() const {
    const std::lock_guard lock(mutex_);
    return waiting_.isEnd;
}

} // namespace tarnwick::player
