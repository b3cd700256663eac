#include "TarnwickServe/HTTP/Rules.h"

#include <gtest/gtest.h>

#include <set>

namespace tarnwick {
namespace {

Site site() {
    const auto bytes = std::make_shared<const std::string>("page");
    return {.version = 1,
            .resources = {{"", {"text/html", bytes}}, {"e/a b.metal", {"text/html", bytes}}}};
}

const Connection::Address here{.text = "127.0.0.1", .port = 8642, .isLoopback = true};

int status(const std::string& path, const std::optional<AccessToken>& token,
           const std::string& method = "GET") {
    return answerOf({.method = method, .path = path, .hosts = {"127.0.0.1:8642"}}, site(), here,
                    token)
        .status;
}

TEST(AccessToken, isAnotherOneEachTimeAndEqualsOnlyItself) {
    std::set<std::string> texts;
    for (int count = 0; count < 50; ++count) {
        const AccessToken token = AccessToken::make();
        EXPECT_EQ(token.text().size(), 26U);
        EXPECT_EQ(token.text().find_first_not_of("0123456789abcdefghjkmnpqrstvwxyz"),
                  std::string::npos);
        texts.insert(token.text());
        EXPECT_TRUE(token.equals(token.text()));
        for (std::size_t at : {0U, 13U, 25U}) {
            std::string other = token.text();
            other[at] = other[at] == '0' ? '1' : '0';
            EXPECT_FALSE(token.equals(other));
        }
        EXPECT_FALSE(token.equals(""));
        EXPECT_FALSE(token.equals(token.text() + "0"));
    }
    EXPECT_EQ(texts.size(), 50U);
}

TEST(Rules, showNothingWithoutTheToken) {
    const std::optional<AccessToken> token = AccessToken::make();
    const std::string& text = token->text();
    for (const std::string& path : std::vector<std::string>{
             "/", "/" + text, "/e/a b.metal", "/events", "/site.json", "/" + text.substr(1) + "/",
             "//" + text + "/", "/x/" + text + "/"})
        EXPECT_EQ(status(path, token), 403) << path;
    EXPECT_EQ(status("/", token, "POST"), 403);
    EXPECT_EQ(status("/" + text + "/", token), 200);
    EXPECT_EQ(status("/" + text + "/events", token), 200);
    EXPECT_EQ(status("/" + text + "/e/a b.metal", token), 200);
    EXPECT_EQ(status("/" + text + "/other", token), 404);
}

TEST(Rules, answerOnlyTheAddressThatWasAsked) {
    const auto statusFor = [](std::vector<std::string> hosts, const Connection::Address& address) {
        return answerOf({.method = "GET", .path = "/", .hosts = std::move(hosts)}, site(), address,
                        {})
            .status;
    };
    EXPECT_EQ(statusFor({"127.0.0.1:8642"}, here), 200);
    EXPECT_EQ(statusFor({"LocalHost:8642"}, here), 200);
    for (const char* host : {"", "127.0.0.1", "localhost", "127.0.0.1:8643", "rebound.example:8642",
                             "127.0.0.1:8642.rebound.example", "127.0.0.1:8642 ", "[::1]:8642"})
        EXPECT_EQ(statusFor({host}, here), 421) << host;
    EXPECT_EQ(statusFor({}, here), 400);
    EXPECT_EQ(statusFor({"127.0.0.1:8642", "127.0.0.1:8642"}, here), 400);

    const Connection::Address outer{.text = "fd00::5", .port = 80};
    EXPECT_EQ(statusFor({"[fd00::5]"}, outer), 200);
    EXPECT_EQ(statusFor({"[fd00::5]:80"}, outer), 200);
    EXPECT_EQ(statusFor({"localhost"}, outer), 421);
}

} // namespace
} // namespace tarnwick
