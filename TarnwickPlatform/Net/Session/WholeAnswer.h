// The receiver that collects an answer for a future.
#pragma once

#include "TarnwickPlatform/Net/Session/Receiver.h"

#include <future>

namespace tarnwick {

class WholeAnswer : public Receiver {
  public:
    explicit WholeAnswer(std::size_t limit) : limit_(limit) {} // bytes of the body

    std::future<Answer> future() { return promise_.get_future(); }

    bool begin(const URLResponse& response) override;
    Taken take(std::string_view bytes) override;
    void end() override;
    void fail(const NetError& error) override;
    bool hasRoom() const override { return true; }
    bool isCancelled() const override { return false; }

  private:
    std::size_t limit_;
    std::optional<Answer> answer_; // absent before begin()
    std::promise<Answer> promise_;
};

} // namespace tarnwick
