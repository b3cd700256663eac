// Work with files in the background, in the order in which it was asked for.
#pragma once

#include "player/App/Background.h"

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <utility>

namespace tarnwick::player {

// On one thread. A file system that does not answer delays only the work of this one.
class FileWork : public QObject {
    Q_OBJECT

  public:
    FileWork();

    // Once all earlier work is done, calls `begin`, whose result runs on another thread, then
    // `then` with the result of that. Neither is called after this is destroyed; work that runs
    // goes on.
    template <class Begin, class Then> void add(Begin begin, Then then) {
        waiting_.push_back([this, begin = std::move(begin), then = std::move(then)]() mutable {
            inBackground(this, begin(), [this, then = std::move(then)](auto result) mutable {
                finish();
                then(std::move(result));
                beginNext();
            });
        });
        if (waiting_.size() == 1 && !isRunning_)
            beginNext();
    }

    bool isBusy() const { return isRunning_ || !waiting_.empty(); }

  signals:
    void done(); // not busy any more
    void late(); // the work takes longer than two seconds

  private:
    void beginNext();
    void finish();

    std::deque<std::function<void()>> waiting_;
    bool isRunning_ = false;
    QTimer lateness_;
};

} // namespace tarnwick::player
