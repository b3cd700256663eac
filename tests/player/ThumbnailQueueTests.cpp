#include "player/Thumbnails/ThumbnailQueue.h"

#include <gtest/gtest.h>

#include <thread>

namespace tarnwick::player {
namespace {

ThumbnailRequest request(std::uint64_t id, ThumbnailRank rank, int frames = 1) {
    return {.id = id, .frames = frames, .rank = rank};
}

std::uint64_t nextId(ThumbnailQueue& queue) {
    const auto task = queue.take(0);
    if (!task)
        return 0;
    queue.done(*task);
    return task->request.id;
}

TEST(ThumbnailQueue, drawsWhatIsPointedAtThenStillsThenFilms) {
    ThumbnailQueue queue;
    queue.ask(request(1, ThumbnailRank::film, 2));
    queue.ask(request(2, ThumbnailRank::still));
    queue.ask(request(3, ThumbnailRank::still));
    EXPECT_EQ(nextId(queue), 2u);
    queue.ask(request(4, ThumbnailRank::pointedAt));
    EXPECT_EQ(nextId(queue), 4u);
    EXPECT_EQ(nextId(queue), 3u);
    EXPECT_EQ(nextId(queue), 1u);
    queue.ask(request(5, ThumbnailRank::still)); // between two frames of a film
    EXPECT_EQ(nextId(queue), 5u);
    const auto last = queue.take(0);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->frame, 1);
    EXPECT_EQ(nextId(queue), 1u);
    EXPECT_EQ(nextId(queue), 0u);
}

TEST(ThumbnailQueue, forgetsWhatIsCancelledOrReplaced) {
    ThumbnailQueue queue;
    queue.ask(request(1, ThumbnailRank::still));
    const auto first = queue.take(0);
    ASSERT_TRUE(first);
    queue.ask(request(1, ThumbnailRank::still));
    EXPECT_FALSE(queue.isWanted(*first));
    queue.done(*first); // changes nothing
    const auto second = queue.take(0);
    ASSERT_TRUE(second);
    EXPECT_TRUE(queue.isWanted(*second));
    queue.cancel(1);
    EXPECT_FALSE(queue.isWanted(*second));
    EXPECT_FALSE(queue.take(0));
}

TEST(ThumbnailQueue, endsWaiting) {
    ThumbnailQueue queue;
    std::thread other([&] { queue.end(); });
    EXPECT_FALSE(queue.take(100));
    queue.rest(100);
    other.join();
    EXPECT_TRUE(queue.isEnd());
}

} // namespace
} // namespace tarnwick::player
