// What other threads pass to the drawing thread.
#pragma once

#include "player/Drawing/LiveRecord.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace tarnwick::player {

class Drawing;

// Any thread.
class LiveMail {
  public:
    using Request = std::function<void(Drawing&)>; // called on the drawing thread

    struct Delivery {
        std::shared_ptr<const LiveRecord> record; // the newest; null before the first
        std::vector<Request> requests;            // in order
        bool isEnd = false;
    };

    void show(std::shared_ptr<const LiveRecord> record);
    void ask(Request request);
    void end();

    // Waits until there is something new, at most that many seconds.
    Delivery take(double seconds);
    // Whether take() would not wait.
    bool hasNews() const;
    bool isEnd() const;

  private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Delivery waiting_;
    bool isNew_ = false;
};

} // namespace tarnwick::player
