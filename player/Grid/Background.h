// Work that may block, such as reading a folder, on a thread of its own.
#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <thread>
#include <utility>

namespace tarnwick::player {

// Calls `then` with the result of `work` on the thread of the windows, unless `context` is
// destroyed before. `work` must not throw, nor use objects of that thread; it may outlive
// `context`.
template <typename Work, typename Then> void inBackground(QObject& context, Work work, Then then) {
    std::thread([guard = QPointer<QObject>(&context), work = std::move(work),
                 then = std::move(then)]() mutable {
        auto result = work();
        if (QCoreApplication* application = QCoreApplication::instance())
            QMetaObject::invokeMethod(
                application,
                [guard, then = std::move(then), result = std::move(result)]() mutable {
                    if (guard)
                        then(std::move(result));
                },
                Qt::QueuedConnection);
    }).detach();
}

} // namespace tarnwick::player
