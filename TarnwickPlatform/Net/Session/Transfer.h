// One request from its start to its answer, through all redirects.
#pragma once

#include "TarnwickBase/WaitedTime.h"
#include "TarnwickPlatform/Net/Session/Exchange.h"
#include "TarnwickPlatform/Net/Session/Waker.h"
#include "TarnwickPlatform/Net/TaskDelegate.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace tarnwick {

// Constructed on any thread; all other calls are on the session's thread.
class Transfer : public ExchangeEvents {
  public:
    using Clock = WaitedTime::Clock;

    Transfer(URLRequest request, std::shared_ptr<TaskDelegate> delegate,
             std::shared_ptr<Receiver> receiver, const SessionConfiguration& configuration);

    // Starts. `stop` is checked in each attend(), and requesting it wakes the session's thread.
    void start(CURLM* multi, std::stop_token stop, std::shared_ptr<Waker> waker);
    // Ends the transfer if it was cancelled or timed out; resumes it if the receiver has room
    // again. Called at least every WaitedTime::longestStep.
    void attend(Clock::time_point now);
    void didEnd(CURLcode code); // its exchange
    void fail(const NetError& error);

    bool isOver() const { return isOver_; }
    bool owns(CURL* easy) const { return exchange_ && exchange_->easy() == easy; }
    Clock::duration timeLeft(Clock::time_point now) { return timeout_ - waited_.look(now); }

  private:
    void send();
    void followRedirect();
    bool didReceive(const URLResponse& response) override;
    Receiver::Taken didReceive(std::string_view bytes) override;
    void didSendBody(std::int64_t sent) override;

    URLRequest request_;
    const std::shared_ptr<TaskDelegate> delegate_; // may be null
    const std::shared_ptr<Receiver> receiver_;     // shared with its reader
    const SessionConfiguration& configuration_;
    const Clock::duration timeout_;
    WaitedTime waited_;
    CURLM* multi_ = nullptr;
    std::stop_token stop_;
    std::optional<std::stop_callback<std::function<void()>>> wakingAtStop_;
    std::optional<URLRequest> next_; // the request after the redirect under way
    std::unique_ptr<Exchange> exchange_;
    int redirects_ = 0;
    bool isHeldUp_ = false;
    bool isOver_ = false;
};

} // namespace tarnwick
