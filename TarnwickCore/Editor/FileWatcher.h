// Watches a file, such as an episode in an editor, for changes.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "TarnwickPlatform/Dispatch/DispatchTimer.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// Polls one file and calls back once if its stamp differs from the one before. The removal of a
// file is not reported; its creation is. Polling works on every file system and for every way of
// saving: in place, by renaming another file over it, through a symbolic link.
class FileWatcher {
  public:
    // Reads the stamp at once without a callback, then every `interval` seconds (DispatchTimer
    // describes invalid intervals). Polls and callbacks run on `queue`. The file is named by its
    // path; for a URL pass the decoded path.
    FileWatcher(std::filesystem::path file, double interval, DispatchQueue& queue,
                std::function<void()> onChange);
    // Stops. May run inside onChange.
    ~FileWatcher();
    FileWatcher(const FileWatcher&) = delete;
    FileWatcher& operator=(const FileWatcher&) = delete;

    // Stops for ever: no callback begins after this call. May be called from any thread, from
    // onChange, and more than once. Does not wait: on another thread a callback that has begun runs
    // to its end. Wait for it with sync() of the queue before destroying objects that onChange
    // uses.
    void stop();

    struct timespec_ {
        std::int64_t s = 0, ns = 0;

        bool operator==(const timespec_&) const = default;
    };

    // The state of a file that two polls compare.
    struct Stamp {
        timespec_ mtime;         // time of the last modification
        std::int64_t size = 0;   // bytes
        std::uint64_t inode = 0; // changes if another file is renamed over this one

        bool operator==(const Stamp&) const = default;
    };

    // The stamp of `file`, links followed; nothing if it is missing or unreadable.
    static std::optional<Stamp> stamp(const std::filesystem::path& file);

  private:
    struct Watch;

    std::shared_ptr<Watch> watch_; // shared with a running poll, whose onChange may destroy this
    DispatchTimer timer_;
};

} // namespace tarnwick
