#include "TarnwickBase/WaitedTime.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <thread>
#include <unistd.h>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

TEST(WaitedTime, countsALongStepAsOneSecond) {
    const WaitedTime::Clock::time_point begin{};
    WaitedTime waited(begin);
    EXPECT_EQ(waited.look(begin + 300ms), 300ms);
    EXPECT_EQ(waited.look(begin + 1000ms), 1s);
    EXPECT_EQ(waited.look(begin + 1h), 2s);
    EXPECT_EQ(waited.look(begin + 1h + 10ms), 2010ms);
}

// A child that is stopped for 1.5 s counts at most one second.
TEST(WaitedTime, excludesTheTimeOfAStop) {
    const pid_t child = fork();
    if (child == 0) {
        const auto begin = WaitedTime::Clock::now();
        WaitedTime waited;
        raise(SIGSTOP);
        const auto byTheClock = WaitedTime::Clock::now() - begin;
        _exit(byTheClock >= 1500ms && waited.look() <= 1s ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, WUNTRACED), child);
    ASSERT_TRUE(WIFSTOPPED(status));
    std::this_thread::sleep_for(1500ms);
    kill(child, SIGCONT);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace
} // namespace tarnwick
