// The thread of a session, with many transfers on one multi handle.
#pragma once

#include "TarnwickPlatform/Net/Session/Transfer.h"

#include <mutex>
#include <thread>
#include <vector>

namespace tarnwick {

class SessionLoop {
  public:
    explicit SessionLoop(SessionConfiguration configuration);
    ~SessionLoop(); // cancels all transfers and blocks until the thread ends
    SessionLoop(const SessionLoop&) = delete;
    SessionLoop& operator=(const SessionLoop&) = delete;

    // Any thread.
    void add(std::unique_ptr<Transfer> transfer, std::stop_token stop);
    const std::shared_ptr<Waker>& waker() const { return waker_; }
    const SessionConfiguration& configuration() const { return configuration_; }

  private:
    struct Arrival {
        std::unique_ptr<Transfer> transfer;
        std::stop_token stop;
    };

    void run();
    bool takeArrivals(); // false: the session ends
    void takeEnds();
    void attend();
    int millisecondsToNextLook() const;

    const SessionConfiguration configuration_;
    CURLM* multi_;
    const std::shared_ptr<Waker> waker_;
    std::mutex mutex_; // guards the next two
    std::vector<Arrival> arrivals_;
    bool isEnding_ = false;
    std::vector<std::unique_ptr<Transfer>> transfers_; // the thread's own
    std::thread thread_;
};

} // namespace tarnwick
