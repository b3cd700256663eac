#include "player/App/FileWork.h"

namespace tarnwick::player {
namespace {

constexpr int noticed = 2000; // milliseconds

} // namespace

FileWork::FileWork() {
    lateness_.setSingleShot(true);
    lateness_.setInterval(noticed);
    connect(&lateness_, &QTimer::timeout, this, &FileWork::late);
}

void FileWork::beginNext() {
    if (isRunning_)
        return;
    if (waiting_.empty()) {
        emit done();
        return;
    }
    isRunning_ = true;
    lateness_.start();
    const auto next = std::move(waiting_.front());
    waiting_.pop_front();
    next();
}

void FileWork::finish() {
    isRunning_ = false;
    lateness_.stop();
}

} // namespace tarnwick::player
