#include "player/App/UserSettings.h"

#include <QHash>
#include <QSettings>
#include <QThreadPool>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <utility>

namespace tarnwick::player {
namespace {

using Values = QHash<QString, QVariant>;

constexpr std::chrono::seconds longestRead{2};
constexpr std::chrono::seconds longestFarewell{1};

QSettings fileOfUser() {
    return {QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tarnwick"),
            QStringLiteral("player")};
}

Values readValues() {
    const QSettings file = fileOfUser();
    Values values;
    for (const QString& key : file.allKeys())
        values.insert(key, file.value(key));
    return values;
}

void write(const Values& values) {
    QSettings file = fileOfUser();
    for (auto value = values.begin(); value != values.end(); ++value)
        file.setValue(value.key(), value.value());
}

} // namespace

struct UserSettings::Shared {
    Values values; // of the owner's thread

    std::mutex mutex;
    std::condition_variable isDone;
    Values waiting; // to be written; guarded by the mutex
    bool isWriting = false;

    void writeWaiting();
};

// A value that is set while earlier ones are written is written after them.
void UserSettings::Shared::writeWaiting() {
    std::unique_lock lock(mutex);
    while (!waiting.isEmpty()) {
        const Values taken = std::exchange(waiting, {});
        lock.unlock();
        write(taken);
        lock.lock();
    }
    isWriting = false;
    isDone.notify_all();
}

UserSettings::UserSettings() : shared_(std::make_shared<Shared>()) {
    const auto read = std::make_shared<std::promise<Values>>();
    std::future<Values> values = read->get_future();
    QThreadPool::globalInstance()->start([read] { read->set_value(readValues()); });
    if (values.wait_for(longestRead) == std::future_status::ready)
        shared_->values = values.get();
}

UserSettings::~UserSettings() {
    std::unique_lock lock(shared_->mutex);
    shared_->isDone.wait_for(lock, longestFarewell, [this] { return !shared_->isWriting; });
}

QVariant UserSettings::value(const QString& key, const QVariant& byDefault) const {
    return shared_->values.value(key, byDefault);
}

void UserSettings::set(const QString& key, const QVariant& value) {
    if (shared_->values.contains(key) && shared_->values.value(key) == value)
        return;
    shared_->values.insert(key, value);
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting.insert(key, value);
    if (!std::exchange(shared_->isWriting, true))
        QThreadPool::globalInstance()->start([shared = shared_] { shared->writeWaiting(); });
}

} // namespace tarnwick::player
