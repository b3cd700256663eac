// A queue between two of the writer's threads.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

namespace tarnwick {

// First in, first out. One thread pushes and finishes, the other pops. Either may abandon the
// queue: then it drops its values, and push and pop return nothing.
template <typename Value> class BoundedQueue {
  public:
    explicit BoundedQueue(std::size_t capacity) : capacity(capacity) {}

    // Blocks until there is room. False: abandoned.
    bool push(Value value) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return abandoned || values.size() < capacity; });
        return put(std::move(value));
    }

    // Does not block. False: full, finished or abandoned.
    bool tryPush(Value value) {
        std::lock_guard lock(mutex);
        return values.size() < capacity && !finished && put(std::move(value));
    }

    bool hasRoom() const {
        std::lock_guard lock(mutex);
        return values.size() < capacity && !finished && !abandoned;
    }

    // Blocks until there is a value. Absent: finished and empty, or abandoned.
    std::optional<Value> pop() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return abandoned || finished || !values.empty(); });
        if (abandoned || values.empty())
            return std::nullopt;
        std::optional<Value> value(std::move(values.front()));
        values.pop_front();
        changed.notify_all();
        return value;
    }

    void finish() {
        std::lock_guard lock(mutex);
        finished = true;
        changed.notify_all();
    }

    void abandon() {
        std::deque<Value> dropped; // destroyed without the lock: it may run callers' code
        std::lock_guard lock(mutex);
        abandoned = true;
        dropped.swap(values);
        changed.notify_all();
    }

  private:
    bool put(Value&& value) {
        if (abandoned)
            return false;
        values.push_back(std::move(value));
        changed.notify_all();
        return true;
    }

    const std::size_t capacity;
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Value> values;
    bool finished = false;
    bool abandoned = false;
};

} // namespace tarnwick
