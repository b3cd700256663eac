#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/Unfinished.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <poll.h>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// The status in which a process ends that does `work`, and exits with 7 if `work` returns.
int statusOf(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(7);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

void waitForTheEnd() {
    std::this_thread::sleep_for(20s);
}

TEST(EndSignals, endTheProcessByTheSignalAndRemoveUnfinishedFiles) {
    // Not a TemporaryFolder, which the child would remove too.
    const fs::path parent = testing::TempDir() + "tarnwick-" + std::to_string(getpid());
    const fs::path unfinished = parent / "unfinished", finished = parent / "finished";
    for (const fs::path& folder : {unfinished, finished})
        fs::create_directories(folder / "inner");
    const int status = statusOf([&] {
        const EndSignals signals;
        const Unfinished one(unfinished);
        std::optional<Unfinished> other(finished);
        other.reset();
        raise(SIGTERM);
        waitForTheEnd();
    });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    EXPECT_FALSE(fs::exists(unfinished));
    EXPECT_TRUE(fs::exists(finished / "inner"));
    fs::remove_all(parent);
}

// The parent of vfork() waits in the kernel as for a page of a file that does not come: only for
// the child, or a signal that kills.
TEST(EndSignals, areHeardWhileTheMainThreadWaitsInTheKernel) {
    int begun[2]{}, open[2]{};
    ASSERT_EQ(pipe(begun) + pipe(open), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(open[1]);
        const EndSignals signals;
        if (vfork() == 0) {
            char byte = 0;
            if (write(begun[1], "", 1) == 1 && read(open[0], &byte, 1) == 0)
                _exit(0);
        }
        _exit(7);
    }
    char byte = 0;
    ASSERT_EQ(read(begun[0], &byte, 1), 1);
    kill(child, SIGINT);
    int status = 0;
    for (int wait = 0; wait < 1000 && waitpid(child, &status, WNOHANG) == 0; ++wait)
        std::this_thread::sleep_for(10ms);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    for (const int end : {begun[0], begun[1], open[0], open[1]})
        close(end);
    waitpid(child, &status, 0);
}

TEST(EndSignals, areHeldFor1500MillisecondsAtMost) {
    const auto begin = Clock::now();
    const int status = statusOf([&] {
        const EndSignals signals;
        const HeldSignals held;
        raise(SIGINT);
        pollfd event{.fd = held.descriptor(), .events = POLLIN, .revents = 0};
        if (poll(&event, 1, 10'000) == 1 && held.arrived())
            waitForTheEnd();
    });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_GE(Clock::now() - begin, 1500ms);
}

TEST(EndSignals, waitForTheHolderOrItsAnswer) {
    const int released = statusOf([] {
        const EndSignals signals;
        {
            const HeldSignals held;
            raise(SIGTERM);
        }
        _exit(8); // not reached
    });
    EXPECT_TRUE(WIFSIGNALED(released)) << released;
    const int nested = statusOf([] {
        const EndSignals signals;
        const HeldSignals held;
        raise(SIGTERM);
        (void)HeldSignals();
        _exit(8);
    });
    EXPECT_TRUE(WIFEXITED(nested) && WEXITSTATUS(nested) == 8) << nested;
    const int answered = statusOf([] {
        const EndSignals signals;
        {
            HeldSignals held;
            raise(SIGTERM);
            held.answer();
        }
        _exit(8);
    });
    EXPECT_TRUE(WIFEXITED(answered) && WEXITSTATUS(answered) == 8) << answered;
}

TEST(EndSignals, ignoreIgnoredSignalsAndEndWithAStatus) {
    const int ignored = statusOf([] {
        signal(SIGHUP, SIG_IGN);
        const EndSignals signals;
        raise(SIGHUP);
        std::this_thread::sleep_for(50ms);
    });
    EXPECT_TRUE(WIFEXITED(ignored) && WEXITSTATUS(ignored) == 7) << ignored;
    const int soon = statusOf([] {
        const EndSignals signals;
        endSoon(9);
        waitForTheEnd();
    });
    EXPECT_TRUE(WIFEXITED(soon) && WEXITSTATUS(soon) == 9) << soon;
    const int answered = statusOf([] {
        const EndSignals signals;
        {
            HeldSignals held;
            raise(SIGTERM);
            held.answer();
        }
        endSoon(0);
        waitForTheEnd();
    });
    EXPECT_TRUE(WIFEXITED(answered) && WEXITSTATUS(answered) == 0) << answered;
    EXPECT_EQ(HeldSignals().descriptor(), -1); // without an EndSignals
}

} // namespace
} // namespace tarnwick
