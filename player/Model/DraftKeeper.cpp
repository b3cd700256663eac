#include "player/Model/DraftKeeper.h"

#include <mutex>
#include <optional>
#include <utility>

namespace tarnwick::player {

struct DraftKeeper::Shared {
    std::mutex mutex;
    std::optional<Draft> waiting; // guarded by the mutex

    // Of the queue's thread.
    std::filesystem::path folder;
    std::unique_ptr<Autosave> autosave;
    Fail fail;
    bool hasFailed = false;

    std::optional<Draft> take() {
        const std::lock_guard lock(mutex);
        return std::exchange(waiting, std::nullopt);
    }
    bool put(Draft draft) { // whether none waited
        const std::lock_guard lock(mutex);
        return !std::exchange(waiting, std::move(draft));
    }
    void write();
};

void DraftKeeper::Shared::write() {
    const std::optional<Draft> draft = take();
    if (!draft)
        return;
    if (!autosave)
        autosave = Autosave::make(folder);
    const bool isKept = autosave && autosave->keep(*draft);
    if (!std::exchange(hasFailed, !isKept) && hasFailed)
        fail("Unsaved work of " + draft->title + " cannot be kept in " + folder.string() + ": " +
             (autosave ? autosave->failure() : "the folder cannot be written") + ".");
}

DraftKeeper::DraftKeeper(DispatchQueue& queue, std::filesystem::path folder,
                         std::unique_ptr<Autosave> present, Fail fail)
    : queue_(queue), shared_(std::make_shared<Shared>()) {
    shared_->folder = std::move(folder);
    shared_->autosave = std::move(present);
    shared_->fail = std::move(fail);
}

// Removing the lock may take long, too.
DraftKeeper::~DraftKeeper() {
    queue_.async([shared = std::move(shared_)] {});
}

void DraftKeeper::keep(Draft draft) {
    if (shared_->put(std::move(draft)))
        queue_.async([shared = shared_] { shared->write(); });
}

void DraftKeeper::discard() {
    shared_->take();
    queue_.async([shared = shared_] {
        if (shared->autosave)
            shared->autosave->discard();
        shared->autosave.reset();
        shared->hasFailed = false;
    });
}

} // namespace tarnwick::player
