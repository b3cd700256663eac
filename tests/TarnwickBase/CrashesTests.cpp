#include "TarnwickBase/Crashes.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace tarnwick {
namespace {

void freeTwice() {
    tellOfCrashes("a-program");
    void* volatile memory = std::malloc(1 << 12);
    std::free(memory);
    std::free(memory);
}

int deep(int depth) {
    volatile int frame[1 << 12]{};
    frame[0] = depth;
    return depth < 0 ? 0 : deep(depth + 1) + frame[0];
}

template <class Error> void throwInThread(const Error& error) {
    tellOfCrashes("a-program");
    std::thread([&] { throw error; }).join();
}

TEST(Crashes, areToldInOneLine) {
    EXPECT_DEATH(throwInThread(std::bad_alloc()), "^a-program: There is not enough memory.\n$");
    EXPECT_DEATH(throwInThread(std::runtime_error("The disk is full.")),
                 "^a-program: The disk is full.\n$");
    EXPECT_DEATH(throwInThread(std::system_error(EAGAIN, std::generic_category())),
                 "^a-program: There is not enough memory for one more thread.\n$");
    struct sigaction before {};
    sigaction(SIGSEGV, nullptr, &before);
    if (before.sa_handler != SIG_DFL)
        GTEST_SKIP() << "A sanitizer tells of crashes.";
    EXPECT_EXIT(
        {
            tellOfCrashes("a-program");
            std::raise(SIGSEGV);
            std::raise(SIGSEGV); // as the instruction that runs again
        },
        testing::KilledBySignal(SIGSEGV), "^a-program: The program or a driver crashed.");
    EXPECT_EXIT(
        {
            tellOfCrashes("a-program");
            std::exit(deep(0));
        },
        testing::KilledBySignal(SIGSEGV), "^a-program: The program or a driver crashed.");
    EXPECT_EXIT(freeTwice(), testing::KilledBySignal(SIGABRT),
                "\na-program: The program or a library found a fault of its own, and ends.");
}

} // namespace
} // namespace tarnwick
