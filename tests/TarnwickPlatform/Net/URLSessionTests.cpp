#include "TarnwickPlatform/Net/URLSession.h"
#include "tests/Waiting.h"
#include "tests/servers/HostileServer.h"
#include "tests/servers/LoopbackServer.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

ServedAnswer echo(const ServedRequest& request) {
    return {.headers = {{"X-Method", request.method}}, .body = request.target + request.body};
}

TEST(URLSession, sendsMethodHeadersAndBodyAndGivesTheAnswer) {
    LoopbackServer server(echo);
    URLSession session({.additionalHeaders = {{"User-Agent", "Test/1"}, {"Accept", "b/b"}}});
    const auto answer = session
                            .data({.url = server.url("/a/../b%2f?x=1"),
                                   .method = "POST",
                                   .headers = {{"Accept", "a/a"}},
                                   .body = std::string("a\0b", 3)})
                            .get();
    EXPECT_EQ(answer.response.status, 200);
    EXPECT_EQ(*answer.response.headers.find("x-method"), "POST");
    EXPECT_EQ(answer.body, "/a/../b%2f?x=1" + std::string("a\0b", 3));
    EXPECT_EQ(answer.response.expectedLength, std::int64_t(answer.body.size()));
    const auto request = server.requests().at(0);
    EXPECT_EQ(*request.headers.find("User-Agent"), "Test/1");
    EXPECT_EQ(*request.headers.find("Accept"), "a/a");
    for (const char* name : {"Content-Type", "Expect", "Cookie", "Accept-Encoding"})
        EXPECT_FALSE(request.headers.find(name)) << name;
}

NetError::Kind kindOf(std::future<Answer> answer) {
    try {
        answer.get();
    } catch (const NetError& error) {
        return error.kind();
    }
    throw std::runtime_error("There is an answer.");
}

TEST(URLSession, endsWithItsTimeoutsWhereNothingArrives) {
    HostileServer silent([](HostileConnection& connection) { connection.waitForClient(); });
    URLSession session({.timeout = 0.05});
    EXPECT_EQ(kindOf(session.data({.url = silent.url()})), NetError::Kind::timedOut);
    EXPECT_EQ(kindOf(session.data({.url = silent.url(), .timeout = 0.02})),
              NetError::Kind::timedOut);
}

TEST(URLSession, streamsWithBackPressureAndEndsWhenItsReaderDoes) {
    const std::string megabyte(1 << 20, 'x');
    std::atomic<int> sent = 0;
    HostileServer server([&](HostileConnection& connection) {
        connection.readHead();
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 104857600\r\n\r\n");
        while (connection.send(megabyte))
            ++sent;
    });
    URLSession session;
    {
        auto stream = session.bytes({.url = server.url()});
        EXPECT_EQ(stream.response().expectedLength, 100 << 20);
        std::size_t size = 0;
        while (size < 5 << 20)
            size += stream.next().value().size();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_LT(sent, 25);
    }
    EXPECT_TRUE(eventually([&] { return server.open() == 0; }));
}

TEST(URLSession, cancelsWhatIsUnderWayWhenItEnds) {
    HostileServer silent([](HostileConnection& connection) { connection.waitForClient(); });
    auto session = std::make_unique<URLSession>();
    auto answer = session->data({.url = silent.url()});
    auto stream = session->bytes({.url = silent.url()});
    session.reset();
    EXPECT_EQ(kindOf(std::move(answer)), NetError::Kind::cancelled);
    EXPECT_THROW(stream.response(), NetError);
}

} // namespace
} // namespace tarnwick
