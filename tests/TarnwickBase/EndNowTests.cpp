#include "TarnwickBase/EndNow.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace tarnwick {
namespace {

TEST(EndNow, writesWhatTheStreamsHoldAndRunsNoHandlerOfTheEnd) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    std::fflush(nullptr); // the child would write it again
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        std::atexit([] { _exit(8); });
        std::printf("without a line break");
        endNow(5);
    }
    close(ends[1]);
    std::array<char, 64> text{};
    EXPECT_EQ(read(ends[0], text.data(), text.size() - 1), 20);
    EXPECT_STREQ(text.data(), "without a line break");
    close(ends[0]);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 5) << status;
}

} // namespace
} // namespace tarnwick
