// A serial queue of work with a thread of its own.
#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace tarnwick {

struct DispatchContext;

// Work given to one queue runs in the order in which it was given, one piece at a time, on the
// queue's one thread. Timers of a queue (DispatchTimer) share that thread, however many there are.
// Work must not throw: what leaves it ends the process.
class DispatchQueue {
  public:
    DispatchQueue();
    // Blocks until the work given so far has been done. Timers fire no more, work given later is
    // dropped. Not to be destroyed by its own work.
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    // Gives work and returns at once. May be called from any thread.
    void async(std::function<void()> work);
    // Blocks until `work` and all work given before it has been done. May be called from any thread
    // but the queue's own. With work that does nothing: waits for what is running.
    void sync(const std::function<void()>& work);

  private:
    friend class DispatchTimer;

    std::shared_ptr<DispatchContext> context_; // shared with timers, which may outlive the queue
    std::thread thread_;
};

} // namespace tarnwick
