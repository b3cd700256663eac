#include "player/Exports/ExportQueue.h"

#include "TarnwickBase/Precondition.h"
#include "player/App/Background.h"
#include "player/Exports/ResultPicture.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

// The result of a job, kept on another thread.
struct Kept {
    std::optional<std::filesystem::path> place;
    std::shared_ptr<const Picture> thumbnail;
    std::string error;
};

Kept kept(OrderFiles& files) {
    try {
        Kept kept{.place = files.finish()};
        if (auto picture = resultPicture(*kept.place))
            kept.thumbnail = std::make_shared<const Picture>(*std::move(picture));
        return kept;
    } catch (const OrderFilesError& error) {
        return {.error = error.what()};
    }
}

} // namespace

ExportQueue::ExportQueue(std::filesystem::path program, QObject* parent)
    : QObject(parent), program_(std::move(program)) {}

ExportQueue::~ExportQueue() = default;

int ExportQueue::add(Order order) {
    precondition(order.output.has_value(), "an export has an output");
    const int id = ++lastId_;
    jobs_[id] = {.id = id, .title = order.title, .wanted = *order.output};
    orders_[id] = order;
    runs_[id] = std::make_unique<OrderRun>(std::move(order), program_);
    emit changed(id);
    startNext();
    return id;
}

void ExportQueue::cancel(int id) {
    const auto found = runs_.find(id);
    if (found == runs_.end())
        return;
    if (jobs_[id].state == ExportState::waiting)
        end(id, ExportState::cancelled);
    else
        found->second->cancel();
}

void ExportQueue::remove(int id) {
    const auto found = jobs_.find(id);
    if (found == jobs_.end() || !found->second.isOver())
        return;
    jobs_.erase(found);
    orders_.erase(id);
    emit changed(id);
}

int ExportQueue::again(int id) {
    Order order = orders_.at(id);
    remove(id);
    return add(std::move(order));
}

int ExportQueue::unfinished() const {
    return static_cast<int>(runs_.size());
}

void ExportQueue::setLimit(int jobs) {
    limit_ = std::max(1, jobs);
    startNext();
}

void ExportQueue::startNext() {
    const auto isIn = [](ExportState state) {
        return [state](const auto& one) { return one.second.state == state; };
    };
    while (std::ranges::count_if(jobs_, isIn(ExportState::running)) < limit_) {
        const auto next = std::ranges::find_if(jobs_, isIn(ExportState::waiting));
        if (next == jobs_.end())
            return;
        next->second.state = ExportState::running;
        run(next->first);
    }
}

void ExportQueue::run(int id) {
    OrderRun& run = *runs_[id];
    connect(&run, &OrderRun::progressed, this, [this, id](const Progress& now) {
        ExportJob& job = jobs_[id];
        job.progress = now;
        job.pace.add(now);
        emit changed(id);
    });
    connect(&run, &OrderRun::finished, this,
            [this, id](const ChildResult& result) { take(id, result); });
    run.start();
    emit changed(id);
}

void ExportQueue::take(int id, const ChildResult& result) {
    if (result.isDone) {
        jobs_[id].remarks = result.remarks;
        keepResult(id);
    } else {
        end(id, result.isCancelled ? ExportState::cancelled : ExportState::failed, result.sentence);
    }
}

void ExportQueue::keepResult(int id) {
    inBackground(
        this, [files = runs_[id]->files()] { return kept(*files); },
        [this, id](const Kept& result) {
            jobs_[id].result = result.place;
            jobs_[id].thumbnail = result.thumbnail;
            end(id, result.place ? ExportState::done : ExportState::failed, result.error);
        });
}

void ExportQueue::end(int id, ExportState state, std::string sentence) {
    runs_[id].release()->deleteLater(); // may be the sender of the present signal
    runs_.erase(id);
    jobs_[id].state = state;
    if (state == ExportState::failed)
        jobs_[id].sentence = std::move(sentence);
    emit changed(id);
    emit ended(id);
    startNext();
}

} // namespace tarnwick::player
