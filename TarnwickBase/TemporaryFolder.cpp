// The process that holds the lock on a folder's `.tarnwick-owner` removes the folder. The lock is
// one of an open file description (fcntl(2), F_OFD_SETLK). Unlike a process number, it never refers
// to another process later, it holds on all hosts of a network file system, and it remains when the
// process closes another descriptor of the file.
#include "TarnwickBase/TemporaryFolder.h"

#include "TarnwickBase/EndSignals.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ownerName = ".tarnwick-owner";
constexpr std::string_view ending = ".partial";
constexpr std::size_t longestName = 200; // bytes of NAME; systems accept 255 in all
constexpr int mostOfOneName = 1000;

fs::path systemFolder() {
    std::error_code error;
    fs::path folder = fs::temp_directory_path(error);
    if (error)
        throw TemporaryFolderError(error.message());
    return folder;
}

bool locked(int descriptor) {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return fcntl(descriptor, F_OFD_SETLK, &whole) == 0;
}

// Whether `path` is still the file that is open.
bool names(const fs::path& path, int descriptor) {
    struct stat open {
    }, named{};
    return fstat(descriptor, &open) == 0 && lstat(path.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

// Removes a folder whose owner is locked, and unlocks the owner. The owner's file is removed last
// and closed before: network file systems keep an open file under another name.
void clear(const fs::path& folder, int owner) {
    std::error_code ignored;
    std::vector<fs::path> entries;
    for (fs::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
         entry.increment(ignored))
        entries.push_back(entry->path());
    for (const fs::path& entry : entries)
        if (entry.filename() != ownerName)
            fs::remove_all(entry, ignored);
    close(owner);
    fs::remove(folder / ownerName, ignored);
    fs::remove(folder, ignored);
}

// The locked owner of a folder of this user that no process uses any more; otherwise -1.
int abandonedOwner(const fs::path& folder) {
    struct stat status {};
    if (lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != geteuid())
        return -1;
    const int owner =
        open((folder / ownerName).c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (owner < 0)
        return -1;
    if (fstat(owner, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
        locked(owner))
        return owner;
    close(owner);
    return -1;
}

// Whether the name is that of a temporary folder: NAME.NUMBER.partial or
// NAME.NUMBER-NUMBER.partial.
bool isOurs(const fs::path& folder) {
    const std::string number = folder.stem().extension().string();
    return number.size() > 1 && number.find_first_not_of("0123456789-", 1) == std::string::npos;
}

// A process that was killed between two calls leaves an empty folder, without an owner.
void removeAbandoned(const fs::path& parent) {
    std::error_code error;
    std::vector<fs::path> left;
    for (fs::directory_iterator entry(parent, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().native().ends_with(ending))
            left.push_back(entry->path());
    for (const fs::path& folder : left)
        if (const int owner = abandonedOwner(folder); owner >= 0)
            clear(folder, owner);
        else if (isOurs(folder))
            rmdir(folder.c_str()); // if it is empty
}

// The new owner of a new folder. -1 if another process removes the folder, because it found it
// empty or before it was locked. Throws TemporaryFolderError.
int newOwner(const fs::path& folder) {
    const fs::path file = folder / ownerName;
    const int owner = open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (owner < 0 && errno == ENOENT)
        return -1;
    if (owner < 0) {
        const std::string reason = std::strerror(errno);
        rmdir(folder.c_str());
        throw TemporaryFolderError(reason);
    }
    const bool isTaken = !locked(owner) && (errno == EAGAIN || errno == EACCES);
    if (!isTaken && names(file, owner))
        return owner;
    close(owner);
    return -1;
}

} // namespace

TemporaryFolder::TemporaryFolder() : TemporaryFolder(systemFolder(), "tarnwick") {}

TemporaryFolder::TemporaryFolder(const fs::path& parent, std::string_view name) {
    const fs::path folder = parent.empty() ? "." : parent;
    removeAbandoned(folder);
    const std::string stem =
        std::string(name.substr(0, longestName)) + "." + std::to_string(getpid());
    const HeldSignals whileMaking; // a signal between mkdir() and the end would leave the folder
    for (int number = 1; owner_ < 0 && number <= mostOfOneName; ++number) {
        path_ = folder /
                (stem + (number > 1 ? "-" + std::to_string(number) : "") + std::string(ending));
        if (mkdir(path_.c_str(), 0700) == 0)
            owner_ = newOwner(path_);
        else if (errno != EEXIST)
            throw TemporaryFolderError(std::strerror(errno));
    }
    if (owner_ < 0)
        throw TemporaryFolderError("All its names are taken");
    unfinished_.emplace(path_);
}

TemporaryFolder::~TemporaryFolder() {
    clear(path_, owner_);
}

} // namespace tarnwick
