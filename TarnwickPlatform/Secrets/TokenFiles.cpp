#include "TarnwickPlatform/Secrets/TokenFiles.h"

#include "TarnwickBase/WholeFile.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string.h> // explicit_bzero
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestName = 240; // bytes of a file's name; systems allow 255
constexpr std::size_t longestToken = std::size_t{16} << 10; // bytes

[[noreturn]] void fail(const fs::path& file, const std::string& what) {
    throw TokenError(file.string() + " " + what + ".");
}

[[noreturn]] void failToWrite(const fs::path& file) {
    fail(file, std::string("cannot be written: ") + std::strerror(errno));
}

// Owns an open file.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0)
            close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

  private:
    int number_;
};

// Checks the open file, so that the checked file is the one that is read.
void checkOwner(int descriptor, const fs::path& file) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        fail(file, "is not a regular file");
    if (status.st_uid != geteuid())
        fail(file, "belongs to another user, so that what it holds is not used");
    if ((status.st_mode & 077) != 0)
        fail(file, "can be read or written by others, so that what it holds is not used");
}

Secret contentsOf(int descriptor, const fs::path& file) {
    std::array<char, longestToken + 1> bytes{};
    std::size_t size = 0;
    ssize_t count = 0;
    while (size < bytes.size() &&
           (count = read(descriptor, bytes.data() + size, bytes.size() - size)) > 0)
        size += static_cast<std::size_t>(count);
    const bool isWhole = count == 0;
    while (size > 0 && bytes[size - 1] == '\n')
        --size;
    Secret token{std::string(bytes.data(), size)};
    explicit_bzero(bytes.data(), bytes.size());
    if (!isWhole || size == 0)
        fail(file, "does not hold a token");
    return token;
}

// Writes the token to a new file. Whether that succeeded; a full disk may be reported only by
// close().
bool writeNew(const fs::path& file, const Secret& token) {
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const std::string& text = token.text();
    const ssize_t count = write(descriptor, text.data(), text.size());
    const bool isWritten = count == static_cast<ssize_t>(text.size()) && fsync(descriptor) == 0;
    const int error = errno;
    const bool isClosed = close(descriptor) == 0;
    if (!isWritten)
        errno = error;
    return isWritten && isClosed;
}

// `text` with all bytes escaped except letters, digits, full stops and hyphens.
std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string name;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool stays =
            (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
            (character >= '0' && character <= '9') || character == '.' || character == '-';
        name += stays ? std::string(1, character)
                      : std::string{'%', digits[byte >> 4], digits[byte & 15]};
    }
    return name;
}

} // namespace

fs::path TokenFiles::usualFolder() {
    const auto absolute = [](const char* name) {
        const char* value = std::getenv(name);
        const fs::path path = value ? value : "";
        return path.is_absolute() ? path : fs::path();
    };
    if (const fs::path state = absolute("XDG_STATE_HOME"); !state.empty())
        return state / "tarnwick";
    const fs::path home = absolute("HOME");
    if (home.empty())
        throw TokenError("The sign-in cannot be kept: HOME is not set.");
    return home / ".local/state/tarnwick";
}

fs::path TokenFiles::fileOf(std::string_view server) const {
    const std::string name = "token-" + escaped(server);
    if (name.size() > longestName)
        throw TokenError("The address of the service is too long to keep a sign-in for it.");
    return folder_ / name;
}

std::optional<Secret> TokenFiles::find(std::string_view server) const {
    const fs::path file = fileOf(server);
    // O_NONBLOCK: opening a pipe does not wait for its other end.
    const Descriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!opened.isOpen() && (errno == ENOENT || errno == ENOTDIR))
        return std::nullopt;
    if (!opened.isOpen())
        fail(file, std::string("cannot be read: ") + std::strerror(errno));
    checkOwner(opened.number(), file);
    return contentsOf(opened.number(), file);
}

void TokenFiles::makeFolder() const {
    std::error_code error;
    if (!folder_.parent_path().empty() && !fs::is_directory(folder_.parent_path(), error))
        for (fs::path made; const fs::path& part : folder_.parent_path()) {
            made /= part;
            mkdir(made.c_str(), 0700); // an error shows in the mkdir below
        }
    if (mkdir(folder_.c_str(), 0700) != 0 && errno != EEXIST)
        failToWrite(folder_);
    // Fails for a folder of another user.
    if (chmod(folder_.c_str(), 0700) != 0)
        failToWrite(folder_);
}

void TokenFiles::keep(std::string_view server, const Secret& token) const {
    const fs::path file = fileOf(server);
    makeFolder();
    try {
        UnfinishedFile unfinished(file);
        if (!writeNew(unfinished.path(), token))
            failToWrite(file);
        unfinished.finish();
    } catch (const WholeFileError& error) {
        throw TokenError(error.what());
    }
}

void TokenFiles::forget(std::string_view server) const {
    const fs::path file = fileOf(server);
    if (unlink(file.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR)
        fail(file, std::string("cannot be removed: ") + std::strerror(errno));
}

} // namespace tarnwick
