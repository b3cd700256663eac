#include "player/Exports/OrderRun.h"

#include "player/App/Background.h"

#include <utility>

namespace tarnwick::player {
namespace {

struct Prepared {
    std::shared_ptr<OrderFiles> files;
    std::string error;
};

Prepared prepared(const Order& order) {
    try {
        return {.files = std::make_shared<OrderFiles>(order)};
    } catch (const OrderFilesError& error) {
        return {.error = error.what()};
    }
}

} // namespace

OrderRun::OrderRun(Order order, std::filesystem::path program, QObject* parent)
    : QObject(parent), order_(std::move(order)), program_(std::move(program)) {
    connect(&child_, &ChildProcess::progressed, this, &OrderRun::progressed);
    connect(&child_, &ChildProcess::printed, this, &OrderRun::printed);
    connect(&child_, &ChildProcess::finished, this, [this](ChildResult result) {
        result.sentence = files_->shown(std::move(result.sentence));
        for (std::string& remark : result.remarks)
            remark = files_->shown(std::move(remark));
        emit finished(result);
    });
}

OrderRun::~OrderRun() {
    if (files_)
        QThreadPool::globalInstance()->start(
            [dropped = std::move(files_)]() mutable { dropped.reset(); });
}

void OrderRun::start() {
    inBackground(
        this, [order = order_] { return prepared(order); },
        [this](const Prepared& made) {
            files_ = made.files;
            if (isCancelled_)
                emit finished({.isCancelled = true, .sentence = "Cancelled."});
            else if (!files_)
                emit finished({.sentence = made.error});
            else
                child_.start(program_, files_->words());
        });
}

void OrderRun::cancel() {
    isCancelled_ = true;
    if (files_)
        child_.cancel();
}

} // namespace tarnwick::player
