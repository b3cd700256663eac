#include "TarnwickServe/LocalServer.h"
#include "TarnwickServe/ServeError.h"
#include "tests/TarnwickServe/RawClient.h"
#include "tests/Thrown.h"
#include "tests/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <list>
#include <thread>

namespace tarnwick {
namespace {

Site siteWith(std::string text, std::size_t longBytes = 0) {
    Site site;
    const auto add = [&](std::string path, std::string bytes) {
        site.resources[std::move(path)] = {"text/html; charset=utf-8",
                                           std::make_shared<const std::string>(std::move(bytes))};
    };
    add("", std::move(text));
    add("e/rose.metal", "rose");
    add("long", std::string(longBytes, 'x'));
    return site;
}

struct Served {
    SiteNews news;
    LocalServer server;

    explicit Served(ServeOptions options = {}, std::size_t longBytes = 0)
        : server((news.publish(siteWith("first", longBytes)), std::move(options)), news) {}

    int port() const { return server.port(); }
    std::string answer(std::string_view target, std::string_view method = "GET") const {
        return answerTo(port(), request(port(), target, method));
    }
};

TEST(LocalServer, answersWithTheNewestSiteAndForbidsTheRest) {
    Served served;
    const std::string answer = served.answer("/");
    EXPECT_EQ(statusOf(answer), 200);
    EXPECT_EQ(bodyOf(answer), "first");
    for (const char* field :
         {"Content-Type: text/html; charset=utf-8\r\n", "Cache-Control: no-store\r\n",
          "X-Content-Type-Options: nosniff\r\n", "Referrer-Policy: no-referrer\r\n",
          "Cross-Origin-Resource-Policy: same-origin\r\n", "Connection: close\r\n",
          "Content-Security-Policy: default-src 'none'; script-src 'self';"})
        EXPECT_NE(answer.find(field), answer.npos) << field << " of\n" << answer;
    EXPECT_EQ(answer.find("Access-Control"), answer.npos);
    served.news.publish(siteWith("second"));
    EXPECT_EQ(bodyOf(served.answer("/?query")), "second");
    EXPECT_EQ(bodyOf(served.answer("/e/rose%2emetal")), "rose");
    const std::string head = served.answer("/", "HEAD");
    EXPECT_EQ(statusOf(head), 200);
    EXPECT_EQ(bodyOf(head), "");
}

TEST(LocalServer, knowsNoPathButThoseOfTheSite) {
    Served served;
    for (const char* target :
         {"/../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "/..%2f..%2fetc%2fpasswd",
          "/e/..%5c..%5cpasswd", "//etc/passwd", "/e/../e/rose.metal", "/e/./rose.metal", "/e/",
          "/e/rose.metal/", "/e/rose.metal%00", "/%00", "/e/rose.metal%00.png",
          "/e%2frose.metal%2f..", "/proc/self/environ", "/%c0%ae%c0%ae/etc/passwd", "/%", "/%zz",
          "/%u002e%u002e/"})
        EXPECT_EQ(statusOf(served.answer(target)), 404) << target;
    for (const char* target : {"http://127.0.0.1/", "*", "e/rose.metal"})
        EXPECT_EQ(statusOf(served.answer(target)), 400) << target;
    // Parts of an answer would multiply it.
    const std::string ranges = answerTo(
        served.port(), "GET / HTTP/1.1\r\nHost: localhost:" + std::to_string(served.port()) +
                           "\r\nRange: bytes=0-0,0-1,0-,-1\r\nAccept-Encoding: gzip, br\r\n\r\n");
    EXPECT_EQ(statusOf(ranges), 200);
    EXPECT_EQ(bodyOf(ranges), "first");
}

TEST(LocalServer, refusesOtherMethodsAndReadsNoBody) {
    Served served;
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH"})
        EXPECT_EQ(statusOf(served.answer("/", method)), 405) << method;
    const std::string port = std::to_string(served.port());
    // What follows a request is not a second one.
    const std::string second = request(served.port(), "/e/rose.metal");
    const std::string answer =
        answerTo(served.port(), "GET / HTTP/1.1\r\nHost: localhost:" + port +
                                    "\r\nContent-Length: " + std::to_string(second.size()) +
                                    "\r\n\r\n" + second);
    EXPECT_EQ(bodyOf(answer), "first");
    const std::string waiting = answerTo(
        served.port(), "POST / HTTP/1.1\r\nHost: localhost:" + port +
                           "\r\nContent-Length: 99999999999\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(statusOf(waiting), 405);
}

TEST(LocalServer, survivesWhatIsNoRequest) {
    Served served({.limits = {.requestSeconds = 0.6}});
    const std::string port = std::to_string(served.port());
    const std::string head = "GET / HTTP/1.1\r\nHost: localhost:" + port + "\r\n";
    for (const std::string& bytes : std::vector<std::string>{
             std::string("\x16\x03\x01\x02\x00\x01\x00", 7), std::string("\r\n\r\n"),
             std::string("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"), std::string("GET\r\n\r\n"),
             std::string("GET / HTTP/9.9\r\n\r\n"), std::string(100, '\0') + "\r\n\r\n",
             "GET /" + std::string(20'000, 'a') +
                 " HTTP/1.1\r\n\r\n", // longer than a request may be
             head + "X: " + std::string(20'000, 'a') + "\r\n\r\n",
             "GET / HTTP/1.1\r\nHost: rebound.example\r\n\r\n", "GET / HTTP/1.1\r\n\r\n"}) {
        const int status = statusOf(answerTo(served.port(), bytes));
        EXPECT_TRUE(status == 0 || (status >= 400 && status < 500)) << status << " for " << bytes;
    }
    std::string many = head;
    for (int field = 0; field < 2000; ++field)
        many += "A: b" + std::to_string(field) + "\r\n";
    EXPECT_EQ(statusOf(answerTo(served.port(), many + "\r\n")), 400);
    EXPECT_EQ(bodyOf(served.answer("/")), "first");
}

TEST(LocalServer, disconnectsClientsThatAreSlow) {
    Served served({.limits = {.connections = 1, .requestSeconds = 0.2, .answerSeconds = 0.2}},
                  64 << 20);
    const auto isFreeAgain = [&] {
        return eventually([&] { return bodyOf(served.answer("/")) == "first"; });
    };
    {
        RawClient silent(served.port());
        EXPECT_EQ(silent.readAll(), "");
        ASSERT_TRUE(isFreeAgain());
    }
    {
        RawClient slow(served.port()); // a byte at a time does not make it longer
        bool isConnected = true;
        for (int byte = 0; byte < 100'000 && isConnected; ++byte) {
            isConnected = slow.send("X");
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        EXPECT_FALSE(isConnected);
        ASSERT_TRUE(isFreeAgain());
    }
    RawClient deaf(served.port()); // asks for much and reads nothing
    deaf.send(request(served.port(), "/long"));
    EXPECT_TRUE(isFreeAgain());
}

TEST(LocalServer, limitsConnectionsAndStreams) {
    Served served({.limits = {.connections = 8, .connectionsOfOne = 6, .streams = 2}});
    const std::string events = request(served.port(), "/events");
    {
        RawClient one(served.port()), other(served.port());
        for (RawClient* each : {&one, &other}) {
            each->send(events);
            EXPECT_NE(each->readTo("data: 1\n").find("text/event-stream"), std::string::npos);
        }
        EXPECT_EQ(statusOf(answerTo(served.port(), events)), 503);
        EXPECT_EQ(statusOf(served.answer("/")), 200);
        std::list<RawClient> silent;
        for (int count = 0; count < 4; ++count)
            silent.emplace_back(served.port());
        EXPECT_TRUE(eventually([&] { return statusOf(served.answer("/")) == 503; }));
    }
    // The places of pages that were closed are free again.
    EXPECT_TRUE(eventually([&] {
        RawClient next(served.port());
        next.send(events);
        return statusOf(next.readTo("\n\n")) == 200;
    }));
}

TEST(LocalServer, tellsStreamsOfVersionsAndOfItsLife) {
    Served served({.limits = {.beatSeconds = 0.05}});
    RawClient page(served.port());
    page.send(request(served.port(), "/events"));
    EXPECT_NE(page.readTo("\n\n\r\n").find("event: site\ndata: 1\n\n"), std::string::npos);
    EXPECT_NE(page.readTo("\n\n\r\n").find("event: beat"), std::string::npos);
    served.news.publish(siteWith("second"));
    EXPECT_NE(page.readTo("data: 2").find("event: site\ndata: 2"), std::string::npos);
    const std::string head = served.answer("/events", "HEAD");
    EXPECT_EQ(statusOf(head), 200);
    EXPECT_EQ(bodyOf(head), "");
}

TEST(LocalServer, endsWithItsClientsConnected) {
    auto served = std::make_unique<Served>(ServeOptions{}, std::size_t{64} << 20);
    const int port = served->port();
    std::list<RawClient> clients;
    for (const std::string& bytes :
         {request(port, "/events"), request(port, "/long"), std::string("GET / HT"), std::string()})
        clients.emplace_back(port).send(bytes);
    clients.front().readTo("data: 1");
    served.reset(); // hangs if a client can hold it
    EXPECT_EQ(clients.back().readAll(), "");
}

TEST(LocalServer, showsOneSiteToEachRequestWhileOthersAreBuilt) {
    Served served;
    std::atomic<bool> isOver = false;
    std::atomic<int> wrong = 0, answers = 0;
    std::list<std::thread> readers;
    for (int count = 0; count < 4; ++count)
        readers.emplace_back([&] {
            while (!isOver) {
                const std::string body = bodyOf(served.answer("/"));
                wrong += body != "first" && (body.size() != 10'000 ||
                                             body.find_first_not_of(body.front()) != body.npos);
                ++answers;
            }
        });
    for (int version = 0; answers < 100; ++version)
        served.news.publish(siteWith(std::string(10'000, static_cast<char>('a' + version % 26))));
    isOver = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
}

TEST(LocalServer, saysWhichAddressCannotBeUsed) {
    Served served;
    const auto sentence = [&](ServeOptions options) {
        return thrownBy<ServeError>(
            [&] { const LocalServer other(std::move(options), served.news); });
    };
    EXPECT_EQ(
        sentence({.port = served.port()}),
        "Port " + std::to_string(served.port()) +
            " of 127.0.0.1 is used by another program; --port names another one, or 0 for any "
            "that is free.");
    EXPECT_EQ(sentence({.addresses = {"studio"}}),
              "\"studio\" is not an address of IPv4 or IPv6, such as 0.0.0.0 or ::.");
    EXPECT_EQ(sentence({.addresses = {"203.0.113.7"}}),
              "203.0.113.7 is not an address of this machine.");
}

} // namespace
} // namespace tarnwick
