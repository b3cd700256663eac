// Rouses a session's thread from its wait for the network.
#pragma once

#include <curl/curl.h>

#include <mutex>

namespace tarnwick {

// Shared by the session and by all that may outlive it: streams and stop callbacks.
class Waker {
  public:
    explicit Waker(CURLM* multi) : multi_(multi) {}

    void wake();   // from any thread; nothing once retired
    void retire(); // before the handle ends

  private:
    std::mutex mutex_; // over multi_
    CURLM* multi_;
};

} // namespace tarnwick
