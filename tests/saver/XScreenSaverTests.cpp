// The real XScreenSaver on a virtual display: it blanks with an installed saver, and ends it at
// input.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "saver/Installing/InstalledSavers.h"
#include "tests/saver/VirtualDisplay.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <grp.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr uid_t user = 65534; // XScreenSaver runs no savers for root

bool eventually(const std::function<bool()>& holds) {
    for (int attempt = 0; attempt < 600; ++attempt) {
        if (holds())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

// A program of the user with this home, and all that it started.
class UserProgram {
  public:
    UserProgram(std::vector<std::string> words, const VirtualDisplay& display, const fs::path& home)
        : process_(fork()) {
        if (process_ != 0)
            return;
        if (geteuid() == 0 &&
            (setgroups(0, nullptr) != 0 || setgid(user) != 0 || setuid(user) != 0))
            _exit(126);
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        setenv("DISPLAY", display.name().c_str(), 1);
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_CACHE_HOME", (home / "cache").c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
        std::vector<char*> list;
        for (std::string& word : words)
            list.push_back(word.data());
        list.push_back(nullptr);
        execvp(list[0], list.data());
        _exit(127);
    }
    ~UserProgram() {
        if (!status_)
            kill(process_, SIGTERM);
        waitForEnd();
        kill(-process_, SIGKILL); // what it started
    }
    UserProgram(const UserProgram&) = delete;
    UserProgram& operator=(const UserProgram&) = delete;

    int waitForEnd() {
        if (!status_ && waitpid(process_, &status_.emplace(), 0) != process_)
            status_ = -1;
        return *status_;
    }

  private:
    pid_t process_;
    std::optional<int> status_;
};

// Processes with `word` in their command lines.
int processesWith(const std::string& word) {
    int count = 0;
    std::error_code error;
    for (const auto& process : fs::directory_iterator("/proc", error)) {
        const std::string bytes = fileBytes(process.path() / "cmdline").value_or("");
        count += bytes.find(word) != std::string::npos;
    }
    return count;
}

TEST(XScreenSaver, blanksWithAnInstalledSaverAndEndsItAtInput) {
    if (std::system("command -v xscreensaver >/dev/null") != 0)
        GTEST_SKIP() << "The Debian package xscreensaver is not installed.";
    VirtualDisplay display;
    const TemporaryFolder folder;
    const fs::path home = folder.path() / "home";
    fs::create_directories(home / "cache");
    fs::permissions(folder.path(), fs::perms(0755));
    writeWholeFile(home / ".xscreensaver",
                   "mode: one\nselected: 0\nlock: False\nsplash: False\nfade: False\n"
                   "unfade: False\n\n");
    const Episode episode =
        Episode::of("float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {"
                    " return float4(0.2, 0.6, 1.0, 1.0); }");
    const fs::path bundle =
        installSaver({.episode = episode, .settings = {.name = "Blue"}, .program = SAVER_PROGRAM},
                     {.savers = home / "savers",
                      .entries = home / "entries",
                      .xscreensaver = home / ".xscreensaver"})
            .bundle;
    if (geteuid() == 0) {
        for (const char* below : {"", "cache", ".xscreensaver"})
            ASSERT_EQ(chown((home / below).c_str(), user, user), 0);
    }

    const UserProgram daemon({"xscreensaver", "--no-splash"}, display, home);
    ASSERT_TRUE(eventually([&] {
        return UserProgram({"xscreensaver-command", "-activate"}, display, home).waitForEnd() == 0;
    }));
    EXPECT_TRUE(eventually([&] {
        return display.pixel(display.root(), 320, 240) == std::array{51, 153, 255};
    }));
    EXPECT_EQ(processesWith(bundle.string()), 1);
    // It ignores input for a moment after it was asked to blank.
    EXPECT_TRUE(eventually([&] {
        UserProgram({"xdotool", "key", "space"}, display, home).waitForEnd();
        return processesWith(bundle.string()) == 0;
    }));
}

} // namespace
} // namespace tarnwick
