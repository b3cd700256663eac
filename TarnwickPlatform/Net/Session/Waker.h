// Wakes a session's thread from its wait for the network.
#pragma once

#include <curl/curl.h>

#include <mutex>

namespace tarnwick {

// Shared by the session with streams and stop callbacks, which may outlive it.
class Waker {
  public:
    explicit Waker(CURLM* multi) : multi_(multi) {}

    void wake();   // any thread; no effect after retire()
    void retire(); // called before the handle is freed

  private:
    std::mutex mutex_; // guards multi_
    CURLM* multi_;
};

} // namespace tarnwick
