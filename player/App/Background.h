// Work on another thread, whose result comes back.
#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QThreadPool>
#include <memory>
#include <utility>

namespace tarnwick::player {

// Runs `work` on a thread of Qt's pool, then `then` with its result on the thread of `receiver`,
// which is the calling one. `then` is not called if `receiver` is destroyed before. `work` must not
// throw, and its result can be copied.
template <class Work, class Then> void inBackground(QObject* receiver, Work work, Then then) {
    using Result = std::invoke_result_t<Work>;
    auto* watcher = new QFutureWatcher<Result>(receiver);
    QObject::connect(watcher, &QFutureWatcherBase::finished, receiver,
                     [watcher, then = std::move(then)]() mutable {
                         watcher->deleteLater();
                         then(watcher->result());
                     });
    const auto promise = std::make_shared<QPromise<Result>>();
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, work = std::move(work)]() mutable {
        promise->start();
        promise->addResult(work());
        promise->finish();
    });
}

} // namespace tarnwick::player
