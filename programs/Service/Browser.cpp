#include "programs/Service/Browser.h"

#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <unistd.h>

namespace tarnwick {
namespace {

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

// Starts it detached from this terminal and its Ctrl-C.
class Detachment {
  public:
    Detachment() {
        posix_spawn_file_actions_init(&files_);
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&files_, descriptor, "/dev/null", O_RDWR, 0);
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID);
    }
    ~Detachment() {
        posix_spawn_file_actions_destroy(&files_);
        posix_spawnattr_destroy(&attributes_);
    }
    Detachment(const Detachment&) = delete;
    Detachment& operator=(const Detachment&) = delete;

    bool start(std::string program, std::string word) const {
        char* words[] = {program.data(), word.data(), nullptr};
        pid_t process = 0;
        return posix_spawnp(&process, program.c_str(), &files_, &attributes_, words, environ) == 0;
    }

  private:
    posix_spawn_file_actions_t files_;
    posix_spawnattr_t attributes_;
};

} // namespace

bool showInBrowser(const URL& page) {
    if (page.scheme() != "http" && page.scheme() != "https")
        return false;
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))
        return false;
    return Detachment().start("xdg-open", page.string());
}

} // namespace tarnwick
