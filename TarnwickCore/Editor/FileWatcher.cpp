#include "TarnwickCore/Editor/FileWatcher.h"

#include <sys/stat.h>

#include <atomic>
#include <utility>

namespace tarnwick {

struct FileWatcher::Watch {
    const std::filesystem::path file;
    const std::function<void()> onChange;
    std::optional<Stamp> last; // used on the queue only
    std::atomic<bool> stopped = false;

    void look() {
        const std::optional<Stamp> now = stamp(file);
        if (now == std::exchange(last, now) || !now)
            return;
        // After the poll, so that no change after the stop is reported.
        if (!stopped)
            onChange();
    }
};

FileWatcher::FileWatcher(std::filesystem::path file, double interval, DispatchQueue& queue,
                         std::function<void()> onChange)
    : watch_(new Watch{.file = file, .onChange = std::move(onChange), .last = stamp(file)}),
      timer_(queue, interval, [weak = std::weak_ptr(watch_)] {
          if (const auto watch = weak.lock())
              watch->look();
      }) {}

FileWatcher::~FileWatcher() {
    stop();
}

void FileWatcher::stop() {
    watch_->stopped = true;
    timer_.cancel();
}

std::optional<FileWatcher::Stamp> FileWatcher::stamp(const std::filesystem::path& file) {
    // A path with a NUL names no file; stat() would read the path before the NUL.
    struct stat status {};
    if (file.native().find('\0') != std::string::npos || ::stat(file.c_str(), &status) != 0)
        return std::nullopt;
    return Stamp{.mtime = {.s = status.st_mtim.tv_sec, .ns = status.st_mtim.tv_nsec},
                 .size = status.st_size,
                 .inode = status.st_ino};
}

} // namespace tarnwick
