// The thumbnails that are still to be drawn.
#pragma once

#include "player/Thumbnails/Thumbnail.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

namespace tarnwick::player {

// One picture of a request.
struct ThumbnailTask {
    ThumbnailRequest request;
    int frame = 0;
    std::uint64_t serial = 0; // of the request: no two have the same
};

// Any thread.
class ThumbnailQueue {
  public:
    void ask(ThumbnailRequest request);
    void cancel(std::uint64_t id);
    void end();
    bool isEnd() const;

    // Waits at most that many seconds for a task. The most urgent one; of equal ones, the oldest.
    // It remains in the queue until done().
    std::optional<ThumbnailTask> take(double seconds);
    // Whether nobody cancelled or replaced the task's request.
    bool isWanted(const ThumbnailTask& task) const;
    // The next task of its request is the next frame, unless that was the last one.
    void done(const ThumbnailTask& task);
    // Its request is given up.
    void drop(const ThumbnailTask& task);
    // Waits, unless the end comes earlier.
    void rest(double seconds);

  private:
    std::vector<ThumbnailTask>::iterator placeOf(std::uint64_t serial);

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<ThumbnailTask> waiting_; // one for each request, in order of asking
    std::uint64_t lastSerial_ = 0;
    bool isEnd_ = false;
};

} // namespace tarnwick::player
