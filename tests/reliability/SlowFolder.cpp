// slowFolder BACKING DELAY MOUNTPOINT [OPTION OF FUSE]...: shows the folder BACKING at MOUNTPOINT
// as a file system whose every call takes as many seconds as the file DELAY says at the time, 0
// without one. A call that waits goes on as soon as DELAY says less. Unmount it with fusermount3
// -u.
#define FUSE_USE_VERSION 31
#include <fuse3/fuse.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

std::string backing, delayFile; // set by main() before all calls

std::string placeOf(const char* path) {
    return backing + path;
}

// False if the caller was interrupted.
bool delay() {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    for (;;) {
        double seconds = 0;
        std::ifstream(delayFile) >> seconds;
        if (std::chrono::duration<double>(Clock::now() - begin).count() >= seconds)
            return true;
        if (fuse_interrupted() != 0)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// The result of a call of the system as FUSE wants it.
int answer(long result) {
    return result < 0 ? -errno : static_cast<int>(result);
}

int descriptorOf(const fuse_file_info* file) {
    return static_cast<int>(file->fh);
}

int onGetattr(const char* path, struct stat* status, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    if (file != nullptr)
        return answer(fstat(descriptorOf(file), status));
    return answer(lstat(placeOf(path).c_str(), status));
}

int onReadlink(const char* path, char* to, std::size_t size) {
    if (!delay())
        return -EINTR;
    const ssize_t length = ::readlink(placeOf(path).c_str(), to, size - 1);
    if (length >= 0)
        to[length] = '\0';
    return length < 0 ? -errno : 0;
}

DIR* folderOf(const fuse_file_info* file) {
    return reinterpret_cast<DIR*>(file->fh);
}

int onOpendir(const char* path, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    DIR* const folder = opendir(placeOf(path).c_str());
    file->fh = reinterpret_cast<std::uint64_t>(folder);
    return folder == nullptr ? -errno : 0;
}

int onReaddir(const char*, void* to, fuse_fill_dir_t fill, off_t, fuse_file_info* file,
              fuse_readdir_flags) {
    if (!delay())
        return -EINTR;
    rewinddir(folderOf(file));
    while (const dirent* entry = ::readdir(folderOf(file)))
        fill(to, entry->d_name, nullptr, 0, static_cast<fuse_fill_dir_flags>(0));
    return 0;
}

int onReleasedir(const char*, fuse_file_info* file) {
    return answer(closedir(folderOf(file)));
}

int onMkdir(const char* path, mode_t mode) {
    if (!delay())
        return -EINTR;
    return answer(::mkdir(placeOf(path).c_str(), mode));
}

int onUnlink(const char* path) {
    if (!delay())
        return -EINTR;
    return answer(::unlink(placeOf(path).c_str()));
}

int onRmdir(const char* path) {
    if (!delay())
        return -EINTR;
    return answer(::rmdir(placeOf(path).c_str()));
}

int onSymlink(const char* target, const char* path) {
    if (!delay())
        return -EINTR;
    return answer(::symlink(target, placeOf(path).c_str()));
}

int onRename(const char* from, const char* to, unsigned flags) {
    if (!delay())
        return -EINTR;
    return answer(renameat2(AT_FDCWD, placeOf(from).c_str(), AT_FDCWD, placeOf(to).c_str(), flags));
}

int onChmod(const char* path, mode_t mode, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    if (file != nullptr)
        return answer(fchmod(descriptorOf(file), mode));
    return answer(::chmod(placeOf(path).c_str(), mode));
}

int onTruncate(const char* path, off_t size, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    if (file != nullptr)
        return answer(ftruncate(descriptorOf(file), size));
    return answer(::truncate(placeOf(path).c_str(), size));
}

int onOpen(const char* path, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    const int descriptor = ::open(placeOf(path).c_str(), file->flags);
    file->fh = static_cast<std::uint64_t>(descriptor);
    return descriptor < 0 ? -errno : 0;
}

int onCreate(const char* path, mode_t mode, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    const int descriptor = ::open(placeOf(path).c_str(), file->flags, mode);
    file->fh = static_cast<std::uint64_t>(descriptor);
    return descriptor < 0 ? -errno : 0;
}

int onRead(const char*, char* to, std::size_t size, off_t at, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    return answer(pread(descriptorOf(file), to, size, at));
}

int onWrite(const char*, const char* from, std::size_t size, off_t at, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    return answer(pwrite(descriptorOf(file), from, size, at));
}

int onStatfs(const char* path, struct statvfs* status) {
    if (!delay())
        return -EINTR;
    return answer(statvfs(placeOf(path).c_str(), status));
}

int onRelease(const char*, fuse_file_info* file) {
    delay(); // the caller does not wait
    return answer(close(descriptorOf(file)));
}

int onFsync(const char*, int, fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    return answer(::fsync(descriptorOf(file)));
}

int onAccess(const char* path, int mode) {
    if (!delay())
        return -EINTR;
    return answer(::access(placeOf(path).c_str(), mode));
}

int onUtimens(const char* path, const timespec times[2], fuse_file_info* file) {
    if (!delay())
        return -EINTR;
    if (file != nullptr)
        return answer(futimens(descriptorOf(file), times));
    return answer(utimensat(AT_FDCWD, placeOf(path).c_str(), times, AT_SYMLINK_NOFOLLOW));
}

} // namespace

int main(int count, char** words) {
    if (count < 4) {
        std::fprintf(stderr, "usage: slowFolder BACKING DELAY MOUNTPOINT [OPTION]...\n");
        return 2;
    }
    char* const program = words[0];
    backing = words[1];
    delayFile = words[2];
    fuse_operations operations{};
    operations.init = [](fuse_conn_info*, fuse_config* config) -> void* {
        config->intr = 1;
        config->intr_signal = SIGUSR1; // to the thread of the call
        // Otherwise libfuse keeps a path locked while a file of that path is closed, which no
        // signal interrupts, and unlink() waits for it.
        config->nullpath_ok = 1;
        config->hard_remove = 1;
        std::signal(SIGUSR1, [](int) {});
        return nullptr;
    };
    operations.getattr = onGetattr;
    operations.readlink = onReadlink;
    operations.opendir = onOpendir;
    operations.readdir = onReaddir;
    operations.releasedir = onReleasedir;
    operations.mkdir = onMkdir;
    operations.unlink = onUnlink;
    operations.rmdir = onRmdir;
    operations.symlink = onSymlink;
    operations.rename = onRename;
    operations.chmod = onChmod;
    operations.truncate = onTruncate;
    operations.open = onOpen;
    operations.create = onCreate;
    operations.read = onRead;
    operations.write = onWrite;
    operations.statfs = onStatfs;
    // Without flush: a process that ends waits for it in the kernel, where no signal reaches it.
    operations.release = onRelease;
    operations.fsync = onFsync;
    operations.access = onAccess;
    operations.utimens = onUtimens;
    words[2] = program;
    return fuse_main(count - 2, words + 2, &operations, nullptr);
}
