#include "player/Thumbnails/Thumbnails.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Thumbnails/ThumbnailDrawing.h"

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds longestEnd{1};
constexpr double idle = 20;       // seconds without work until the device is closed
constexpr double restShare = 4;   // of the time of drawing, while the live picture is slow
constexpr double longestRest = 3; // seconds
constexpr int lowPriority = 19;   // a nice value

} // namespace

struct Thumbnails::Shared {
    explicit Shared(std::filesystem::path folder) : folder(std::move(folder)) {}

    std::filesystem::path folder;
    ThumbnailQueue queue;
    std::atomic<bool> isLivePictureSlow = false;
    std::mutex calling; // held during a call of `listener`
    Listener listener;
    std::promise<void> ended;

    void run();
    void work(ThumbnailDrawing& drawing, const ThumbnailTask& task);
};

void Thumbnails::Shared::run() {
    setpriority(PRIO_PROCESS, 0, lowPriority); // Linux: of this thread and those that it starts
    ThumbnailDrawing drawing(folder);
    drawing.prune();
    while (!queue.isEnd()) {
        if (const auto task = queue.take(idle))
            work(drawing, *task);
        else
            drawing.rest();
    }
}

void Thumbnails::Shared::work(ThumbnailDrawing& drawing, const ThumbnailTask& task) {
    const double begin = currentMediaTime();
    auto made = drawing.draw(task, [&] { return queue.isWanted(task); });
    if (made && made->failure.empty())
        queue.done(task);
    else
        queue.drop(task);
    if (made) {
        const std::lock_guard call(calling);
        if (listener)
            listener(*std::move(made));
    }
    if (isLivePictureSlow)
        queue.rest(std::min(restShare * (currentMediaTime() - begin), longestRest));
}

Thumbnails::Thumbnails(std::filesystem::path folder, Listener listener)
    : shared_(std::make_shared<Shared>(std::move(folder))) {
    shared_->listener = std::move(listener);
    thread_ = std::thread([shared = shared_] {
        shared->run();
        shared->ended.set_value();
    });
}

Thumbnails::~Thumbnails() {
    shared_->queue.end();
    {
        const std::lock_guard call(shared_->calling);
        shared_->listener = nullptr;
    }
    if (shared_->ended.get_future().wait_for(longestEnd) == std::future_status::ready)
        thread_.join();
    else
        thread_.detach();
}

void Thumbnails::ask(ThumbnailRequest request) {
    shared_->queue.ask(std::move(request));
}

void Thumbnails::cancel(std::uint64_t id) {
    shared_->queue.cancel(id);
}

void Thumbnails::setLivePictureIsSlow(bool isSlow) {
    shared_->isLivePictureSlow = isSlow;
}

} // namespace tarnwick::player
