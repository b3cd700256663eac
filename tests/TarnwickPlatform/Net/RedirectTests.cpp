#include "TarnwickPlatform/Net/Session/Redirect.h"
#include "tests/TarnwickPlatform/Net/Kinds.h"
#include "tests/servers/LoopbackServer.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

// "/302/TARGET" redirects there by that status, all else says what arrived.
ServedAnswer redirectOrEcho(const ServedRequest& request) {
    if (request.target.size() > 5 && request.target[4] == '/')
        return {.status = std::stoi(request.target.substr(1)),
                .headers = {{"Location", request.target.substr(5)}},
                .body = "moved"};
    const std::string* secret = request.headers.find("Authorization");
    const std::string* type = request.headers.find("Content-Type");
    return {.body = request.method + " " + request.target + " " + request.body + " " +
                    (type ? *type : "-") + " " + (secret ? *secret : "-")};
}

URLRequest post(const URL& url) {
    return {.url = url,
            .method = "POST",
            .headers = {{"Content-Type", "text/plain"}, {"Authorization", "Bearer t"}},
            .body = "body"};
}

TEST(Redirects, keepOrChangeTheMethodByStatus) {
    LoopbackServer server(redirectOrEcho);
    URLSession session;
    const std::pair<const char*, const char*> rows[] = {
        {"/301//x", "GET /x  - Bearer t"},
        {"/302/../x", "GET /x  - Bearer t"},
        {"/303//x?y", "GET /x?y  - Bearer t"},
        {"/307//x", "POST /x body text/plain Bearer t"},
        {"/308//307//302//x", "GET /x  - Bearer t"},
        {"/300//x", "moved"},
        {"/304//x", ""},
    };
    for (const auto& [target, body] : rows)
        EXPECT_EQ(session.data(post(server.url(target))).get().body, body) << target;
    const auto answer = session.data({.url = server.url("/302//x#y")}).get();
    EXPECT_EQ(answer.response.url, server.url("/x"));
}

TEST(Redirects, takeNoSecretToAnotherOrigin) {
    LoopbackServer other(redirectOrEcho);
    LoopbackServer server(redirectOrEcho);
    URLSession session;
    const auto there = other.url("/x").string();
    const auto body = [&](const std::string& target) {
        return session.data(post(server.url(target))).get().body;
    };
    EXPECT_EQ(body("/307/" + there), "POST /x body text/plain -");
    EXPECT_EQ(body("/307/" + other.url("/307/" + server.url("/y").string()).string()),
              "POST /y body text/plain -");
}

TEST(Redirects, goNowhereElseThanToHTTP) {
    LoopbackServer server(redirectOrEcho);
    URLSession session;
    for (const std::string location :
         {"file:///etc/passwd", "gopher://127.0.0.1/", "ftp://127.0.0.1/", "http://u:p@127.0.0.1/",
          "javascript:alert(1)", "http://", "tarnwick://open?src=x"}) {
        const auto answer = session.data({.url = server.url("/302/" + location)}).get();
        EXPECT_EQ(answer.response.status, 302) << location;
        EXPECT_EQ(answer.body, "moved");
    }
    const URLRequest secure{.url = *URL::parse("https://h/")};
    const URLResponse plain{
        .status = 302, .url = secure.url, .headers = {{"location", "http://h/"}}};
    EXPECT_FALSE(redirected(secure, plain));
}

TEST(Redirects, endAtTheirLimit) {
    std::atomic<int> asked = 0;
    LoopbackServer server([&](const ServedRequest&) {
        ++asked;
        return ServedAnswer{.status = 302, .headers = {{"Location", "/"}}};
    });
    URLSession session({.redirectLimit = 5});
    EXPECT_EQ(kindOf(session.data({.url = server.url("/")})), NetError::Kind::tooManyRedirects);
    EXPECT_EQ(asked, 6);
}

struct Guard : TaskDelegate {
    std::thread::id thread;
    std::string asked;
    std::optional<URLRequest> willRedirect(const URLResponse& response,
                                           const URLRequest& next) override {
        thread = std::this_thread::get_id();
        asked += std::to_string(response.status) + " " + next.url.path() + "\n";
        return next.url.path() == "/no" ? std::nullopt : std::optional(next);
    }
};

TEST(Redirects, areTheDelegatesToDecide) {
    LoopbackServer server(redirectOrEcho);
    URLSession session;
    const auto guard = std::make_shared<Guard>();
    auto stream = session.bytes({.url = server.url("/302//307//no")}, guard);
    EXPECT_EQ(stream.response().status, 307);
    EXPECT_EQ(stream.next(), "moved");
    EXPECT_EQ(stream.next(), std::nullopt);
    EXPECT_EQ(guard->asked, "302 /307//no\n307 /no\n");
    EXPECT_FALSE(guard->thread == std::this_thread::get_id());
}

} // namespace
} // namespace tarnwick
