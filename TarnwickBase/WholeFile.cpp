#include "TarnwickBase/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, const std::string& why) {
    throw WholeFileError(file, why);
}

// The file to write, links followed. Throws for folders, devices and pipes, which are not replaced.
fs::path replaceable(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (fs::is_directory(status))
        fail(file, "It is a folder");
    if (fs::exists(status) && !fs::is_regular_file(status))
        fail(file, "It is not a regular file");
    return fs::exists(status) ? fs::canonical(file, error) : file;
}

// Writes a new file. False on an error, with errno set; a full disk may report its error only on
// closing.
bool writeNew(const std::string& name, std::string_view bytes) {
    const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    std::FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
    if (file == nullptr)
        return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int writeError = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written)
        errno = writeError;
    return written && closed;
}

} // namespace

void writeWholeFile(const std::filesystem::path& file, std::string_view bytes) {
    UnfinishedFile unfinished(file);
    if (!writeNew(unfinished.path(), bytes))
        fail(file, std::strerror(errno));
    unfinished.finish();
}

// Checks the folder first, for an error that names the reason.
UnfinishedFile::UnfinishedFile(const std::filesystem::path& file) try
    : target_((checkWholeFile(file), replaceable(file))),
      folder_(target_.parent_path(), target_.filename().native()),
      partial_(folder_.path() / target_.filename()) {
} catch (const TemporaryFolderError& error) {
    fail(file, error.reason);
}

void UnfinishedFile::finish() {
    if (std::rename(partial_.c_str(), target_.c_str()) != 0)
        fail(target_, std::strerror(errno));
}

void checkWholeFile(const std::filesystem::path& file) {
    const fs::path folder = replaceable(file).parent_path();
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0)
        fail(file, std::strerror(errno));
}

} // namespace tarnwick
