// Servers that break the rules: each ends in an answer or in one sentence, soon and in little
// memory.
#include "tests/TarnwickPlatform/Net/Kinds.h"
#include "tests/TarnwickPlatform/Net/Memory.h"
#include "tests/servers/HostileServer.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using namespace std::string_literals;
using Kind = NetError::Kind;

struct Row {
    const char* what;
    std::string answer;
    std::optional<Kind> kind; // absent: the body is "ok"
};

const std::string ok = "HTTP/1.1 200 OK\r\n";

const Row rows[] = {
    {"an end at once", "", Kind::connectionLost},
    {"an end in the headers", ok + "Content-Length: 2\r\n", Kind::connectionLost},
    {"an end behind an interim answer", "HTTP/1.1 100 Continue\r\n\r\n", Kind::connectionLost},
    {"an end in the body", ok + "Content-Length: 100\r\n\r\nok", Kind::connectionLost},
    {"an end between chunks", ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nok\r\n",
     Kind::connectionLost},
    {"a chunk of 2^80 bytes", ok + "Transfer-Encoding: chunked\r\n\r\n100000000000000000000\r\nok",
     Kind::connectionLost},
    {"more than announced", ok + "Content-Length: 2\r\n\r\nokHTTP/1.1 200 OK\r\n", std::nullopt},
    {"no length", ok + "\r\nok", std::nullopt},
    {"a negative length", ok + "Content-Length: -2\r\n\r\nok", Kind::notHTTP},
    {"a length that is none", ok + "Content-Length: two\r\n\r\nok", Kind::notHTTP},
    {"a length of 2^80", ok + "Content-Length: 1208925819614629174706176\r\n\r\nok", Kind::notHTTP},
    {"two lengths", ok + "Content-Length: 2\r\nContent-Length: 9\r\n\r\nok", Kind::notHTTP},
    {"one length twice", ok + "Content-Length: 2\r\nContent-Length: 2\r\n\r\nok", std::nullopt},
    {"an announced length over the cap", ok + "Content-Length: 4097\r\n\r\nok", Kind::tooLarge},
    {"a body over the cap", ok + "\r\n" + std::string(4097, 'x'), Kind::tooLarge},
    {"no HTTP", "+OK ready\r\n", Kind::notHTTP},
    {"a NUL in a header", ok + "A: b\0c\r\n\r\nok"s, Kind::notHTTP},
    {"a coded transfer", ok + "Transfer-Encoding: gzip, chunked\r\n\r\n2\r\nok\r\n0\r\n\r\n",
     Kind::notHTTP},
    {"a coding nobody asked for", ok + "Content-Encoding: gzip\r\n\r\nok", std::nullopt},
    {"headers of 1 MB", ok + "A: " + std::string(1 << 20, 'x') + "\r\n\r\nok", Kind::tooLarge},
    {"100,000 headers",
     [] {
         std::string answer = ok;
         for (int i = 0; i < 100'000; ++i)
             answer += "A: b\r\n";
         return answer + "\r\nok";
     }(),
     Kind::tooLarge},
    {"interim answers without end",
     [] {
         std::string answer;
         for (int i = 0; i < 10'000; ++i)
             answer += "HTTP/1.1 103 Early\r\nA: b\r\n\r\n";
         return answer + ok + "\r\nok";
     }(),
     Kind::tooLarge},
    {"a long trailer",
     ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\nA: " + std::string(1 << 20, 'x') +
         "\r\n\r\n",
     Kind::connectionLost},
};

TEST(HostileServer, getsOneSentenceForEachOfItsTricks) {
    URLSession session({.timeout = 5, .bodyLimit = 4096});
    for (const Row& row : rows) {
        HostileServer server(row.answer);
        for (const bool streamed : {false, true}) {
            if (streamed && row.kind == Kind::tooLarge)
                continue; // the reader's to judge
            std::string body;
            std::optional<Kind> kind;
            try {
                if (streamed) {
                    auto stream = session.bytes({.url = server.url()});
                    while (const auto piece = stream.next())
                        body += *piece;
                } else {
                    body = session.data({.url = server.url()}).get().body;
                }
            } catch (const NetError& error) {
                kind = error.kind();
            }
            EXPECT_EQ(kind, row.kind) << row.what << (streamed ? ", streamed" : "");
            if (!kind) {
                EXPECT_EQ(body, "ok") << row.what;
            }
        }
    }
}

HostileServer::Script dripping(std::string begin, std::string drip) {
    return [=](HostileConnection& connection) {
        connection.readHead();
        connection.send(begin);
        while (connection.send(drip))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    };
}

TEST(HostileServer, isLeftWhenItDrips) {
    URLSession session({.timeout = 0.1});
    for (const auto& begin :
         {"HTTP/1.1 200 O", "HTTP/1.1 200 OK\r\nA: ", "HTTP/1.1 200 OK\r\n\r\n"}) {
        HostileServer server(dripping(begin, "x"));
        EXPECT_EQ(kindOf(session.data({.url = server.url()})), Kind::timedOut) << begin;
        auto stream = session.bytes({.url = server.url()});
        EXPECT_THROW(while (stream.next()){}, NetError) << begin;
    }
    HostileServer loop([](HostileConnection& connection) {
        while (!connection.readHead().empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            connection.send("HTTP/1.1 302 Found\r\nLocation: /\r\nContent-Length: 0\r\n\r\n");
        }
    });
    EXPECT_EQ(kindOf(session.data({.url = loop.url()})), Kind::timedOut); // all redirects together
}

TEST(HostileServer, getsNoMoreMemoryThanTheCapsSay) {
    const std::string megabyte(1 << 20, 'x');
    const auto hundred = [&](std::string head) {
        return [&megabyte, head](HostileConnection& connection) {
            connection.readHead();
            connection.send(head);
            for (int i = 0; i < 100 && connection.send(megabyte); ++i) {
            }
        };
    };
    HostileServer unannounced(hundred(ok + "\r\n")),
        announced(hundred(ok + "Content-Length: 104857600\r\n\r\n"));
    URLSession session({.bodyLimit = 8 << 20});
    const std::size_t before = beginPeak();
    EXPECT_EQ(kindOf(session.data({.url = unannounced.url()})), Kind::tooLarge);
    EXPECT_EQ(kindOf(session.data({.url = announced.url()})), Kind::tooLarge);
    std::size_t size = 0;
    auto stream = session.bytes({.url = announced.url()});
    while (const auto piece = stream.next())
        size += piece->size();
    EXPECT_EQ(size, 100u << 20);
    const std::size_t held = peakMemory() - before;
    RecordProperty("megabytes", static_cast<int>(held >> 20));
    if (isMemoryMeasured) {
        EXPECT_LT(held, 24u << 20); // bytes up to the cap stand twice while they grow
    }
}

TEST(HostileServer, cannotAnswerTheNextRequestWithThisOne) {
    HostileServer server([](HostileConnection& connection) {
        for (int i = 1; !connection.readHead().empty(); ++i) {
            const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n";
            connection.send(answer + std::to_string(i) + answer + "x");
        }
    });
    URLSession session;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(session.data({.url = server.url()}).get().body, "1");
}

TEST(HostileServer, isHeardBeforeItHasTakenTheWholeBody) {
    HostileServer server([](HostileConnection& connection) {
        connection.readHead();
        connection.send("HTTP/1.1 413 Too Large\r\nContent-Length: 2\r\n\r\nno");
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        connection.reset();
    });
    URLSession session;
    const std::string body(20 << 20, 'x');
    const auto answer = session.data({.url = server.url(), .method = "POST", .body = body}).get();
    EXPECT_EQ(answer.response.status, 413);
    EXPECT_EQ(answer.body, "no");
}

} // namespace
} // namespace tarnwick
