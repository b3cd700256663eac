// Keeps the drafts of a document without waiting for the disk.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "player/Model/Autosave.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace tarnwick::player {

// One thread at a time. Writes on a queue, which outlives this and is shared with other documents.
class DraftKeeper {
  public:
    // `fail` is called on the queue with one sentence if a draft cannot be written, once until one
    // is written again. `present` is the draft that the document was recovered from, or null.
    using Fail = std::function<void(const std::string&)>;
    DraftKeeper(DispatchQueue& queue, std::filesystem::path folder,
                std::unique_ptr<Autosave> present, Fail fail);
    ~DraftKeeper(); // keeps the file
    DraftKeeper(const DraftKeeper&) = delete;
    DraftKeeper& operator=(const DraftKeeper&) = delete;

    // Of several drafts that wait, only the newest is written.
    void keep(Draft draft);
    void discard();

  private:
    struct Shared;

    DispatchQueue& queue_;
    std::shared_ptr<Shared> shared_; // shared with work on the queue
};

} // namespace tarnwick::player
