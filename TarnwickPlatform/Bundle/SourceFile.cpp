#include "TarnwickPlatform/Bundle/SourceFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tarnwick {
namespace {

// An open file, closed by the destructor.
struct Descriptor {
    int number;
    explicit Descriptor(int number) : number(number) {}
    ~Descriptor() {
        if (number >= 0)
            close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
};

[[noreturn]] void unreadable(const std::filesystem::path& file, const std::string& why) {
    throw SourceFileError(file.string() + " cannot be read: " + why + ".");
}

[[noreturn]] void tooLong(const std::filesystem::path& file) {
    throw SourceFileError(file.string() + " is longer than the " +
                          std::to_string(longestSource >> 20) + " MiB that a source may have.");
}

// All bytes, at most one block more than the longest source.
std::string bytesOf(const std::filesystem::path& file, int descriptor) {
    std::string bytes;
    std::string block(std::size_t{1} << 16, '\0');
    while (bytes.size() <= longestSource) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            unreadable(file, std::strerror(errno));
        if (count == 0)
            break;
        bytes.append(block, 0, static_cast<std::size_t>(count));
    }
    return bytes;
}

} // namespace

std::string bytesOfSource(const std::filesystem::path& file) {
    const Descriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (opened.number < 0 || fstat(opened.number, &status) != 0)
        unreadable(file, std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        throw SourceFileError(file.string() + " is a folder, not a file of text.");
    if (S_ISREG(status.st_mode) && static_cast<std::size_t>(status.st_size) > longestSource)
        tooLong(file);
    std::string bytes = bytesOf(file, opened.number);
    if (bytes.size() > longestSource)
        tooLong(file);
    return bytes;
}

} // namespace tarnwick
