#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "TarnwickPlatform/Dispatch/DispatchTimer.h"
#include "tests/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <limits>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tarnwick {
namespace {

TEST(DispatchQueue, doesWorkInItsOrderOneAtATime) {
    DispatchQueue queue;
    std::vector<int> done; // unguarded: the queue is the guard
    for (int one = 0; one < 1000; one++)
        queue.async([&done, one] { done.push_back(one); });
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; thread++)
        threads.emplace_back([&] {
            for (int one = 0; one < 250; one++)
                queue.sync([&] { done.push_back(static_cast<int>(done.size())); });
        });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_EQ(done.size(), 2000u);
    for (std::size_t one = 0; one < 1000; one++)
        EXPECT_EQ(done[one], static_cast<int>(one));
}

TEST(DispatchQueue, waitsForTheWorkUnderWayWithoutWorkOfItsOwn) {
    DispatchQueue queue;
    bool isDone = false;
    queue.async([&] { isDone = true; });
    queue.sync({});
    EXPECT_TRUE(isDone);
}

TEST(DispatchQueue, endsWithTheWorkItWasGiven) {
    int done = 0;
    {
        DispatchQueue queue;
        const DispatchTimer forever(queue, 0.001, [] {});
        for (int one = 0; one < 100; one++)
            queue.async([&] { done++; });
    }
    EXPECT_EQ(done, 100);
}

TEST(DispatchTimer, firesOnItsQueueUntilCancelled) {
    DispatchQueue queue;
    std::thread::id thread;
    queue.sync([&] { thread = std::this_thread::get_id(); });
    std::atomic<int> calls = 0, elsewhere = 0;
    DispatchTimer timer(queue, 0.002, [&] {
        elsewhere += std::this_thread::get_id() != thread;
        calls++;
    });
    ASSERT_TRUE(eventually([&] { return calls >= 5; }));
    timer.cancel();
    queue.sync([] {});
    const int then = calls;
    std::atomic<int> later = 0;
    const DispatchTimer other(queue, 0.002, [&] { later++; });
    ASSERT_TRUE(eventually([&] { return later >= 5; }));
    EXPECT_EQ(calls, then);
    EXPECT_EQ(elsewhere, 0);
    timer.cancel();
}

TEST(DispatchTimer, takesLateFiringsForOneAndStaysOnItsGrid) {
    using Clock = std::chrono::steady_clock;
    DispatchQueue queue;
    std::vector<Clock::time_point> calls;
    Clock::time_point start;
    std::optional<DispatchTimer> timer;
    queue.sync([&] {
        start = Clock::now();
        timer.emplace(queue, 0.01, [&] { calls.push_back(Clock::now()); });
        std::this_thread::sleep_for(std::chrono::milliseconds(55));
    });
    ASSERT_TRUE(eventually([&] {
        std::size_t count = 0;
        queue.sync([&] { count = calls.size(); });
        return count >= 3;
    }));
    timer.reset();
    queue.sync([] {});
    // The first call is late, the next ones come on the grid.
    for (std::size_t call = 1; call < calls.size(); call++)
        EXPECT_GE(calls[call] - start, std::chrono::milliseconds(50 + 10 * static_cast<int>(call)));
}

TEST(DispatchTimer, takesAnyNumberForAnInterval) {
    DispatchQueue queue;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::atomic<int> often = 0, never = 0;
    const DispatchTimer none(queue, 0, [&] { often++; });
    const DispatchTimer negative(queue, -infinity, [&] { often++; });
    const DispatchTimer endless(queue, infinity, [&] { never++; });
    const DispatchTimer huge(queue, 1e300, [&] { never++; });
    EXPECT_TRUE(eventually([&] { return often >= 10; }));
    EXPECT_EQ(never, 0);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(DispatchTimer(queue, std::numeric_limits<double>::quiet_NaN(), [] {}), "NaN");
}

TEST(DispatchTimer, mayEndInItsOwnCall) {
    DispatchQueue queue;
    std::atomic<int> calls = 0;
    const auto held = std::make_shared<int>(0);
    std::unique_ptr<DispatchTimer> timer;
    queue.sync([&] {
        timer = std::make_unique<DispatchTimer>(queue, 0.001, [&, held] {
            timer.reset();
            calls += static_cast<int>(held.use_count()) > 1;
        });
    });
    EXPECT_TRUE(eventually([&] { return held.use_count() == 1; })); // the handler is gone
    queue.sync([&] { EXPECT_FALSE(timer); });
    EXPECT_EQ(calls, 1);
}

TEST(DispatchTimer, lastsAgainstEndsFromOtherThreads) {
    std::atomic<int> calls = 0;
    std::vector<std::unique_ptr<DispatchTimer>> leftOver(4);
    {
        DispatchQueue queue;
        std::vector<std::thread> threads;
        for (auto& timer : leftOver)
            threads.emplace_back([&] {
                for (int one = 0; one < 300; one++) {
                    timer = std::make_unique<DispatchTimer>(queue, 0.001, [&] { calls++; });
                    std::this_thread::sleep_for(std::chrono::microseconds(one % 30 * 100));
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_TRUE(eventually([&] { return calls > 0; }));
    }
    const int then = calls; // the queue is gone, its timers are not
    leftOver.clear();
    EXPECT_EQ(calls, then);
}

} // namespace
} // namespace tarnwick
