#include "TarnwickPlatform/Net/Session/StreamedAnswer.h"

namespace tarnwick {

namespace {

constexpr std::size_t room = 256 << 10; // bytes

} // namespace

// Bytes that arrived come before the error after them, also if the reader asks late; cancel() drops
// them.
template <class Condition>
std::unique_lock<std::mutex> StreamedAnswer::lockWhen(Condition hasArrived) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return error_ || hasArrived(); });
    if (isCancelled_ || !hasArrived())
        throw *error_;
    return lock;
}

const URLResponse& StreamedAnswer::response() {
    const auto lock = lockWhen([&] { return response_.has_value(); });
    return *response_; // which does not change any more
}

std::optional<std::string> StreamedAnswer::next() {
    const auto lock = lockWhen([&] { return !waiting_.empty() || hasEnded_; });
    if (waiting_.empty())
        return std::nullopt;
    if (std::exchange(isHeldUp_, false))
        waker_->wake();
    return std::exchange(waiting_, {});
}

void StreamedAnswer::cancel() {
    {
        const std::scoped_lock lock(mutex_);
        isCancelled_ = true;
        error_ = NetError(NetError::Kind::cancelled);
        waiting_.clear();
    }
    changed_.notify_all();
    waker_->wake();
}

bool StreamedAnswer::begin(const URLResponse& response) {
    const std::scoped_lock lock(mutex_);
    response_ = response;
    changed_.notify_all();
    return true;
}

Receiver::Taken StreamedAnswer::take(std::string_view bytes) {
    const std::scoped_lock lock(mutex_);
    if (waiting_.size() >= room) {
        isHeldUp_ = true;
        return Taken::later;
    }
    waiting_ += bytes;
    changed_.notify_all();
    return Taken::all;
}

void StreamedAnswer::end() {
    const std::scoped_lock lock(mutex_);
    hasEnded_ = true;
    changed_.notify_all();
}

void StreamedAnswer::fail(const NetError& error) {
    const std::scoped_lock lock(mutex_);
    if (!error_)
        error_ = error;
    changed_.notify_all();
}

bool StreamedAnswer::hasRoom() const {
    const std::scoped_lock lock(mutex_);
    return waiting_.size() < room;
}

bool StreamedAnswer::isCancelled() const {
    const std::scoped_lock lock(mutex_);
    return isCancelled_;
}

} // namespace tarnwick
