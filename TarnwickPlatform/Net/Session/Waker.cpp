#include "TarnwickPlatform/Net/Session/Waker.h"

namespace tarnwick {

void Waker::wake() {
    const std::scoped_lock lock(mutex_);
    if (multi_)
        curl_multi_wakeup(multi_);
}

void Waker::retire() {
    const std::scoped_lock lock(mutex_);
    multi_ = nullptr;
}

} // namespace tarnwick
