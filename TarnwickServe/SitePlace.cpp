#include "TarnwickServe/SitePlace.h"

#include "TarnwickServe/ServeError.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".metal";

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

std::string descriptorPath(const Descriptor& file) {
    return "/proc/self/fd/" + std::to_string(file.number);
}

bool isInside(const fs::path& folder, const fs::path& file) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return end == folder.end() && rest != file.end();
}

// The first of the names in order, in bounded memory.
class FirstNames {
  public:
    void add(std::string name) {
        names_.push_back(std::move(name));
        if (names_.size() >= 2 * SitePlace::mostEpisodes)
            cut();
    }
    std::vector<std::string> cut() {
        std::ranges::sort(names_);
        names_.resize(std::min(names_.size(), SitePlace::mostEpisodes));
        return names_;
    }

  private:
    std::vector<std::string> names_;
};

SitePlace::Read failed(std::string_view name, const std::string& reason) {
    return {.failure = std::string(name) + " cannot be shown: " + reason + "."};
}

SitePlace::Read bytesOf(const Descriptor& file, std::string_view name, std::size_t mostBytes) {
    std::string bytes;
    std::string block(std::size_t{1} << 16, '\0');
    for (;;) {
        const ssize_t count = ::read(file.number, block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failed(name, std::strerror(errno));
        if (count == 0)
            return {.bytes = std::move(bytes)};
        bytes.append(block, 0, static_cast<std::size_t>(count));
        if (bytes.size() > mostBytes)
            return failed(name, "it is longer than " + std::to_string(mostBytes) + " bytes");
    }
}

} // namespace

SitePlace SitePlace::of(const fs::path& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    if (error)
        throw ServeError(path.string() + " cannot be read: " + error.message() + ".");
    if (fs::is_directory(real, error))
        return {.folder = real};
    if (!fs::is_regular_file(real, error) || real.extension() != ending)
        throw ServeError(path.string() +
                         " is neither an episode, a file that ends with .metal, nor a "
                         "folder.");
    return {.folder = real.parent_path(), .only = real.filename().string()};
}

std::vector<std::string> SitePlace::episodeNames() const {
    if (!only.empty())
        return {only};
    FirstNames names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (name.ends_with(ending) && !name.starts_with('.'))
            names.add(std::move(name));
    }
    return names.cut();
}

// The path is asked of the opened file, so that no link can be changed between the check and the
// reading. O_PATH opens nothing of a pipe or a device.
SitePlace::Read SitePlace::read(std::string_view name, std::size_t mostBytes) const {
    const fs::path path = folder / name;
    const Descriptor found(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    if (found.number < 0 || fstat(found.number, &status) != 0)
        return failed(name, std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        return failed(name, "it is not a regular file");
    std::error_code error;
    if (!isInside(folder, fs::read_symlink(descriptorPath(found), error)) || error)
        return failed(name, "it is a link to a file outside the folder");
    const Descriptor file(open(descriptorPath(found).c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number < 0)
        return failed(name, std::strerror(errno));
    return bytesOf(file, name, mostBytes);
}

} // namespace tarnwick
