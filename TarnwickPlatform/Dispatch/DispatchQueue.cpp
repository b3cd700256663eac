#include "TarnwickPlatform/Dispatch/DispatchQueue.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Dispatch/DispatchContext.h"

#include <asio/executor_work_guard.hpp>
#include <asio/post.hpp>

#include <future>

namespace tarnwick {

DispatchQueue::DispatchQueue() : context_(std::make_shared<DispatchContext>()) {
    thread_ = std::thread([&io = context_->io] {
        const auto stays = asio::make_work_guard(io);
        io.run();
    });
}

DispatchQueue::~DispatchQueue() {
    precondition(std::this_thread::get_id() != thread_.get_id(),
                 "a queue is not destroyed by its own work, for which it would wait");
    asio::post(context_->io, [&io = context_->io] { io.stop(); });
    thread_.join();
}

void DispatchQueue::async(std::function<void()> work) {
    asio::post(context_->io, std::move(work));
}

void DispatchQueue::sync(const std::function<void()>& work) {
    precondition(std::this_thread::get_id() != thread_.get_id(),
                 "sync is not called by the queue's own work, behind which it would wait");
    std::promise<void> done;
    asio::post(context_->io, [&] {
        if (work)
            work();
        done.set_value();
    });
    done.get_future().wait();
}

} // namespace tarnwick
