#include "TarnwickBase/Unfinished.h"

#include <algorithm>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

namespace tarnwick {
namespace {

// One list for the process, because a signal ends the whole process.
struct List {
    std::mutex mutex;
    std::vector<std::filesystem::path> paths;
};

List& list() {
    static List only;
    return only;
}

} // namespace

Unfinished::Unfinished(std::filesystem::path path) : path_(std::move(path)) {
    std::error_code error; // then the path as given
    if (auto absolute = std::filesystem::absolute(path_, error); !error)
        path_ = std::move(absolute);
    const std::lock_guard lock(list().mutex);
    list().paths.push_back(path_);
}

Unfinished::~Unfinished() {
    const std::lock_guard lock(list().mutex);
    auto& paths = list().paths;
    if (const auto at = std::find(paths.begin(), paths.end(), path_); at != paths.end())
        paths.erase(at);
}

void removeUnfinished() {
    const std::lock_guard lock(list().mutex);
    std::error_code ignored;
    for (const std::filesystem::path& path : list().paths)
        std::filesystem::remove_all(path, ignored);
}

} // namespace tarnwick
