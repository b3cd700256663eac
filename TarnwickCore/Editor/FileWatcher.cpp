#include "TarnwickCore/Editor/FileWatcher.h"

#include <sys/stat.h>

#include <atomic>
#include <utility>

namespace tarnwick {

struct FileWatcher::Watch {
    const std::filesystem::path file;
    const std::function<void()> onChange;
    std::optional<Stamp> last; // touched on the queue alone
    std::atomic<bool> stopped = false;

    void look() {
        const std::optional<Stamp> now = stamp(file);
        if (now == std::exchange(last, now) || !now)
            return;
        // After the look, so that no change is told of that came after the stop.
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
    // A path with a NUL inside names no file, while stat() would look at what stands before it.
    struct stat status {};
    if (file.native().find('\0') != std::string::npos || ::stat(file.c_str(), &status) != 0)
        return std::nullopt;
    return Stamp{.mtime = {.s = status.st_mtim.tv_sec, .ns = status.st_mtim.tv_nsec},
                 .size = status.st_size,
                 .inode = status.st_ino};
}

} // namespace tarnwick
