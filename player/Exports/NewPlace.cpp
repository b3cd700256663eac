#include "player/Exports/NewPlace.h"

#include <linux/fs.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

constexpr int mostNames = 10000;

// "name 2.mp4" for the number 2.
fs::path numbered(const fs::path& path, int number) {
    if (number == 1)
        return path;
    return path.parent_path() /
           (path.stem().string() + " " + std::to_string(number) + path.extension().string());
}

// 0, or the number of the error.
int moved(const fs::path& from, const fs::path& to) {
    if (syscall(SYS_renameat2, AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A file system without RENAME_NOREPLACE. A folder cannot have a second name, and rename()
    // replaces empty folders only.
    std::error_code error;
    if (!fs::is_directory(from, error))
        return link(from.c_str(), to.c_str()) == 0 ? 0 : errno;
    if (fs::exists(fs::symlink_status(to, error)))
        return EEXIST;
    return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

} // namespace

fs::path movedToNewPlace(const fs::path& from, const fs::path& wanted) {
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number < mostNames; ++number) {
        const fs::path place = numbered(wanted, number);
        error = moved(from, place);
        if (error == 0)
            return place;
    }
    throw NewPlaceError(wanted.string() + " cannot be written: " + std::strerror(error) + ".");
}

} // namespace tarnwick::player
