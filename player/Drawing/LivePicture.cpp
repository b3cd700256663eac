#include "player/Drawing/LivePicture.h"

#include "player/Drawing/Drawing.h"
#include "player/Drawing/LiveMail.h"

#include <chrono>
#include <thread>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds longestEnd{1};

} // namespace

struct LivePicture::Shared {
    LiveMail mail;
};

LivePicture::LivePicture(Listener listener) : shared_(std::make_shared<Shared>()) {
    std::packaged_task<void()> task([shared = shared_, listener = std::move(listener)] {
        Drawing(shared->mail, listener).run();
    });
    ended_ = task.get_future();
    std::thread(std::move(task)).detach();
}

LivePicture::~LivePicture() {
    shared_->mail.end();
    ended_.wait_for(longestEnd);
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
