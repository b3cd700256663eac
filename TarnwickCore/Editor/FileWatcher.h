// Notices that a file, mostly a shader's source under somebody's hands, has changed.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "TarnwickPlatform/Dispatch/DispatchTimer.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// Looks at one file again and again, and calls back once when a look finds another file, or the
// file otherwise, than the look before. A file that goes away is not reported, one that comes
// (again) is. Polling sees changes on every file system and by every way of saving: in place, by
// renaming another file over it, through a symbolic link.
class FileWatcher {
  public:
    // Looks at once, without calling back, then every `interval` seconds (DispatchTimer says what
    // becomes of intervals that are none). Looks and calls run on `queue`. The file is named by its
    // path, as all files are here; of a URL give the decoded path.
    FileWatcher(std::filesystem::path file, double interval, DispatchQueue& queue,
                std::function<void()> onChange);
    // Stops. May run inside onChange.
    ~FileWatcher();
    FileWatcher(const FileWatcher&) = delete;
    FileWatcher& operator=(const FileWatcher&) = delete;

    // Ends the watching for good: no call begins after this, and none tells of what happens to the
    // file from now on. May be called from any thread, from onChange too, and again. Does not wait:
    // seen from another thread a call that has begun runs to its end, for which the queue's sync()
    // waits before what onChange refers to is destroyed.
    void stop();

    struct timespec_ {
        std::int64_t s = 0, ns = 0;

        bool operator==(const timespec_&) const = default;
    };

    // What two looks compare.
    struct Stamp {
        timespec_ mtime;         // of the last modification
        std::int64_t size = 0;   // bytes
        std::uint64_t inode = 0; // differs when another file was renamed over this one

        bool operator==(const Stamp&) const = default;
    };

    // Of the file that `file` names, links followed; nothing if it is missing or cannot be read.
    static std::optional<Stamp> stamp(const std::filesystem::path& file);

  private:
    struct Watch;

    std::shared_ptr<Watch> watch_; // shared with a look under way, whose onChange may destroy this
    DispatchTimer timer_;
};

} // namespace tarnwick
