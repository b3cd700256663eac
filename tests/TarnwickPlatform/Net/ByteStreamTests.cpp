#include "TarnwickPlatform/Net/URLSession.h"
#include "tests/Waiting.h"
#include "tests/servers/HostileServer.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

// Sends 100 MB and counts the megabytes that went.
struct Flood {
    std::atomic<int> sent = 0;
    HostileServer server{[this](HostileConnection& connection) {
        const std::string megabyte(1 << 20, 'x');
        connection.readHead();
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 104857600\r\n\r\n");
        while (connection.send(megabyte))
            ++sent;
    }};
};

TEST(ByteStream, holdsUpTheServerOfASlowReader) {
    Flood flood;
    URLSession session;
    auto stream = session.bytes({.url = flood.server.url()});
    EXPECT_EQ(stream.response().expectedLength, 100 << 20);
    std::size_t size = 0, longest = 0;
    while (size < 20 << 20) {
        const std::size_t piece = stream.next().value().size();
        size += piece;
        longest = std::max(longest, piece);
    }
    EXPECT_LE(longest, 512u << 10);
    // What is not read stays there, but for the system's own buffers, a few megabytes.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_LT(flood.sent, 60);
}

TEST(ByteStream, endsTheRequestWithItsReader) {
    Flood flood;
    URLSession session;
    {
        auto stream = session.bytes({.url = flood.server.url()});
        stream.next();
        auto other = session.bytes({.url = flood.server.url()});
        stream = std::move(other); // ends the first, now or with `other`
    }
    EXPECT_TRUE(eventually([&] { return flood.server.open() == 0; }));
}

TEST(ByteStream, isCancelledFromAnotherThread) {
    HostileServer silent([](HostileConnection& connection) {
        connection.readHead();
        connection.send("HTTP/1.1 200 OK\r\n\r\nx");
        connection.waitForClient();
    });
    URLSession session;
    auto stream = session.bytes({.url = silent.url()});
    EXPECT_EQ(stream.next(), "x");
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        stream.cancel();
    });
    try {
        stream.next();
        ADD_FAILURE();
    } catch (const NetError& error) {
        EXPECT_EQ(error.kind(), NetError::Kind::cancelled);
    }
    other.join();
}

TEST(ByteStream, endsAtItsTimeWhateverItsReaderDoes) {
    Flood flood;
    URLSession session;
    auto stream = session.bytes({.url = flood.server.url(), .timeout = 0.1});
    stream.response();
    EXPECT_TRUE(eventually([&] { return flood.server.open() == 0; }));
    EXPECT_THROW(while (stream.next()){}, NetError);
}

TEST(ByteStream, givesWhatArrivedBeforeTheConnectionWasLost) {
    HostileServer cut("HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nabc");
    URLSession session;
    auto stream = session.bytes({.url = cut.url()});
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // until it is lost
    EXPECT_EQ(stream.response().status, 404);
    EXPECT_EQ(stream.next(), "abc");
    EXPECT_THROW(stream.next(), NetError);
}

} // namespace
} // namespace tarnwick
