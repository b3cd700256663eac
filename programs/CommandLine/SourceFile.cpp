#include "programs/CommandLine/SourceFile.h"

#include "TarnwickCore/Findings/Encoding.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/Findings.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tarnwick {
namespace {

constexpr std::size_t longestText = std::size_t{8} << 20; // bytes

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

[[noreturn]] void unreadable(std::string_view path, const std::string& why) {
    misuse(std::string(path) + " cannot be read: " + why + ".");
}

[[noreturn]] void tooLong(std::string_view path) {
    misuse(std::string(path) + " is longer than the " + std::to_string(longestText >> 20) +
           " MiB that a source may have.");
}

// All bytes, at most one more than the longest text.
std::string bytesOf(std::string_view path, int descriptor) {
    std::string bytes;
    std::string block(std::size_t{1} << 16, '\0');
    while (bytes.size() <= longestText) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            unreadable(path, std::strerror(errno));
        if (count == 0)
            break;
        bytes.append(block, 0, static_cast<std::size_t>(count));
    }
    return bytes;
}

} // namespace

std::string sourceBytes(std::string_view path) {
    const Descriptor file(open(std::string(path).c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (file.number < 0 || fstat(file.number, &status) != 0)
        unreadable(path, std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        misuse(std::string(path) + " is a folder, not a file of text.");
    if (S_ISREG(status.st_mode) && static_cast<std::size_t>(status.st_size) > longestText)
        tooLong(path);
    std::string text = bytesOf(path, file.number);
    if (text.size() > longestText)
        tooLong(path);
    return withoutByteOrderMark(std::move(text));
}

std::string sourceText(std::string_view path) {
    std::string text = sourceBytes(path);
    if (const auto fault = encodingError(text)) {
        printFindings(path, text, std::array{Finding{.diagnostic = *fault, .hint = ""}});
        failure(std::string(path) + " is not text in UTF-8.");
    }
    return text;
}

} // namespace tarnwick
