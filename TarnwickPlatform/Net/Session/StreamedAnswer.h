// The receiver behind a ByteStream: a bounded queue between the session's thread and a reader.
#pragma once

#include "TarnwickPlatform/Net/Session/Receiver.h"
#include "TarnwickPlatform/Net/Session/Waker.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace tarnwick {

class StreamedAnswer : public Receiver {
  public:
    explicit StreamedAnswer(std::shared_ptr<Waker> waker) : waker_(std::move(waker)) {}

    // For the reader, as in ByteStream.
    const URLResponse& response();
    std::optional<std::string> next();
    void cancel();

    bool begin(const URLResponse& response) override;
    Taken take(std::string_view bytes) override;
    void end() override;
    void fail(const NetError& error) override;
    bool hasRoom() const override;
    bool isCancelled() const override;

  private:
    template <class Condition> std::unique_lock<std::mutex> lockWhen(Condition hasArrived);

    const std::shared_ptr<Waker> waker_;
    mutable std::mutex mutex_; // guards all below
    std::condition_variable changed_;
    std::optional<URLResponse> response_;
    std::string waiting_;
    std::optional<NetError> error_;
    bool isHeldUp_ = false; // the session waits for room
    bool hasEnded_ = false;
    bool isCancelled_ = false;
};

} // namespace tarnwick
