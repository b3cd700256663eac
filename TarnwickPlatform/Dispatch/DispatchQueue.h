// A serial queue of work with a thread of its own.
#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace tarnwick {

struct DispatchContext;

// Runs work in the order in which it was given, one piece at a time, on one thread. All timers of a
// queue (DispatchTimer) share that thread. Work must not throw: an exception ends the process.
class DispatchQueue {
  public:
    DispatchQueue(); // starts the thread
    // Blocks until the work given so far is done. Timers stop; work given later is dropped. A
    // queue's own work must not destroy it.
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    // Gives work and returns at once. Any thread.
    void async(std::function<void()> work);
    // Blocks until `work` and all work given before it is done. Any thread but the queue's own.
    // With empty work: waits for the work under way.
    void sync(const std::function<void()>& work);

  private:
    friend class DispatchTimer;

    std::shared_ptr<DispatchContext> context_; // shared with timers, which may outlive the queue
    std::thread thread_;
};

} // namespace tarnwick
