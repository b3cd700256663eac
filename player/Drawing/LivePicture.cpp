#include "player/Drawing/LivePicture.h"

#include "player/Drawing/Drawing.h"
#include "player/Drawing/LiveMail.h"

#include <chrono>
#include <mutex>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds longestEnd{1};

} // namespace

struct LivePicture::Shared {
    LiveMail mail;
    std::mutex calling; // held during a call of the listener
    Listener listener;  // empty once the owner is gone

    void tell(const LiveNews& news) {
        const std::lock_guard call(calling);
        if (listener)
            listener(news);
    }
};

LivePicture::LivePicture(Listener listener) : shared_(std::make_shared<Shared>()) {
    shared_->listener = std::move(listener);
    std::packaged_task<void()> task([shared = shared_] {
        Drawing(shared->mail, [&](const LiveNews& news) { shared->tell(news); }).run();
    });
    ended_ = task.get_future();
    thread_ = std::thread(std::move(task));
}

LivePicture::~LivePicture() {
    shared_->mail.end();
    {
        const std::lock_guard call(shared_->calling);
        shared_->listener = nullptr;
    }
    if (ended_.wait_for(longestEnd) == std::future_status::ready)
        thread_.join();
    else
        thread_.detach();
}

void LivePicture::show(std::shared_ptr<const LiveRecord> record) {
    shared_->mail.show(std::move(record));
}

void LivePicture::addTarget(int id, std::unique_ptr<FrameTarget> target, const PixelSize& size) {
    shared_->mail.ask(
        [id, size, moved = std::make_shared<std::unique_ptr<FrameTarget>>(std::move(target))](
            Drawing& drawing) { drawing.addTarget(id, std::move(*moved), size); });
}

void LivePicture::resizeTarget(int id, const PixelSize& size) {
    shared_->mail.ask([id, size](Drawing& drawing) { drawing.resizeTarget(id, size); });
}

void LivePicture::exposeTarget(int id) {
    shared_->mail.ask([id](Drawing& drawing) { drawing.exposeTarget(id); });
}

std::future<void> LivePicture::removeTarget(int id) {
    auto done = std::make_shared<std::promise<void>>();
    auto future = done->get_future();
    shared_->mail.ask([id, done](Drawing& drawing) {
        drawing.removeTarget(id);
        done->set_value();
    });
    return future;
}

std::future<std::optional<Picture>> LivePicture::snapshot() {
    auto done = std::make_shared<std::promise<std::optional<Picture>>>();
    auto future = done->get_future();
    shared_->mail.ask([done](Drawing& drawing) { done->set_value(drawing.picture()); });
    return future;
}

} // namespace tarnwick::player
