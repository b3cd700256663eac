#include "TarnwickCore/Service/APIClient.h"
#include "TarnwickCore/Text/OutsideJSON.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Kind = ServiceError::Kind;

const Date today = dateAt(1'800'000'000);

LinkStart started(const std::string& members) {
    return LinkStart::decode(
               R"({"device":"d","code":"c","url":"https://a.example/l")" + members + "}", today)
        .value();
}

TEST(LinkStart, clampsItsInterval) {
    for (const auto& [members, interval] :
         std::vector<std::pair<const char*, double>>{{"", 5},
                                                     {R"(,"interval":0.2)", 1},
                                                     {R"(,"interval":600)", 60},
                                                     {R"(,"interval":2.5)", 2.5},
                                                     {R"(,"interval":"9")", 5},
                                                     {R"(,"interval":null)", 5},
                                                     {R"(,"interval":true)", 5}})
        EXPECT_EQ(started(members).interval, interval) << members;
}

TEST(LinkStart, expiresAfterSecondsOrAtADate) {
    const auto after = [](double seconds) {
        return today + std::chrono::duration<double>(seconds);
    };
    for (const auto& [value, date] : std::vector<std::pair<const char*, std::optional<Date>>>{
             {"3600", after(3600)},
             {"-5", after(-5)},
             {"86399.5", after(86399.5)},
             {"86400", dateAt(86400)},
             {"1700000000000", dateAt(1'700'000'000)},
             {"100000000000", dateAt(100'000'000'000)},
             {"1e300", dateAt(1e297)},
             {R"("2024-01-01T00:00:00Z")", dateAt(1'704'067'200)},
             {R"("2024-02-29T23:59:59+01:00")", dateAt(1'709'247'599)},
             {R"("1969-12-31T23:00:00-0130")", dateAt(1'800)},
             {R"("tomorrow")", std::nullopt},
             {R"("2024-01-01T00:00:00.5Z")", std::nullopt},
             {R"("2023-02-29T00:00:00Z")", std::nullopt},
             {R"("2024-01-01T24:00:00Z")", std::nullopt},
             {R"("2024-01-01T00:00:00")", std::nullopt},
             {R"("2024-01-01T00:00:00Z\n")", std::nullopt},
             {"null", std::nullopt}})
        EXPECT_EQ(started(",\"expires\":" + std::string(value)).expires, date) << value;
    EXPECT_EQ(started("").expires, std::nullopt);
}

TEST(ServiceRecords, areReadFromTheirMembersOnly) {
    const URL page = URL::parse("https://a.example/l").value();
    EXPECT_EQ(started(R"(,"more":{})"), (LinkStart{"d", "c", page, 5, std::nullopt}));
    EXPECT_EQ(Approved::decode(R"({"token":"t","email":"e","handle":"h"})"),
              (Approved{"t", "e", "h"}));
    EXPECT_EQ(Approved::decode(R"({"token":"t","email":"e","handle":null})"),
              (Approved{"t", "e", std::nullopt}));
    EXPECT_EQ(Me::decode(R"({"email":"é"})"), (Me{"é", std::nullopt}));
    EXPECT_EQ(Shared::decode(R"({"id":"7","url":"https://a.example/l"})"), (Shared{"7", page}));
}

TEST(ServiceRecords, areAbsentForOtherAnswers) {
    for (const char* json :
         {"", "[]", "{}", R"({"token":"t"})", R"({"token":1,"email":"e"})",
          R"({"token":"t","email":"e","handle":1})", R"({"token":"t","email":"e")"})
        EXPECT_FALSE(Approved::decode(json)) << json;
    for (const char* url : {"", "/l", "javascript:alert(1)", "file:///etc/passwd", "https://"})
        EXPECT_FALSE(Shared::decode(R"({"id":"7","url":")" + std::string(url) + "\"}")) << url;
    EXPECT_FALSE(Me::decode(std::string(R"({"email":"e"})") + '\0'));
    EXPECT_FALSE(Me::decode("{\"email\":\"\xFF\"}"));
    EXPECT_FALSE(LinkStart::decode(R"({"device":"d","code":"c"})", today));
}

TEST(OutsideJSON, limitsTheDepth) {
    const auto nested = [](std::size_t depth) {
        return R"({"error":"x","deep":)" + std::string(depth, '[') + std::string(depth, ']') + "}";
    };
    EXPECT_TRUE(objectOf(nested(deepestOutsideJSON - 1)));
    EXPECT_FALSE(objectOf(nested(deepestOutsideJSON)));
    EXPECT_FALSE(objectOf(nested(400'000)));
    EXPECT_FALSE(objectOf(R"({"deep":)" + std::string(1'000'000, '[')));
}

TEST(ServiceError, hasTheTextOfTheServiceOrOurs) {
    struct Row {
        int status;
        const char* body;
        ServiceError failure;
    };
    for (const Row& row : std::vector<Row>{
             {401, "", {Kind::signedOut, "You are signed out. Sign in again."}},
             {401, R"({"error":"Expired"})", {Kind::signedOut, "Expired"}},
             {409, R"({"needsHandle":true})", {Kind::needsHandle, "Choose a handle first."}},
             {409, R"({"needsHandle":true,"error":"x"})", {Kind::needsHandle, "x"}},
             {409,
              R"({"needsHandle":1,"error":"x"})",
              {Kind::server, "Tarnweb answered 409.", 409}},
             {409,
              R"({"needsHandle":true,"error":1})",
              {Kind::server, "Tarnweb answered 409.", 409}},
             {429, "<html>", {Kind::tooMany, "Too many requests. Try again later."}},
             {500, R"({"error":"x"})", {Kind::server, "x", 500}},
             {500, R"({"error":"\u0000x"})", {Kind::server, "Tarnweb answered 500.", 500}},
             {413,
              R"({"error":null,"needsHandle":null})",
              {Kind::server, "Tarnweb answered 413.", 413}}})
        EXPECT_EQ(ServiceError::of(row.status, row.body), row.failure)
            << row.status << row.body << ServiceError::of(row.status, row.body).what();
    EXPECT_EQ(ServiceError::badAnswer().what(),
              std::string("Tarnweb sent an answer the app could not read."));
}

TEST(ServiceError, cutsItsTextToOneLineOf300Characters) {
    const auto words = [](const std::string& error) {
        return std::string(ServiceError::of(500, R"({"error":")" + error + "\"}").what());
    };
    EXPECT_EQ(words(std::string(200, 'a') + R"(\r\n)" + std::string(200, 'b')),
              std::string(200, 'a') + std::string(100, 'b'));
    const std::string family = "\U0001F469\u200D\U0001F469\u200D\U0001F467";
    std::string families;
    for (int count = 0; count < 300; ++count)
        families += family;
    EXPECT_EQ(words(families + family), families);
}

TEST(APIClient, readsPollsByTheirStatus) {
    EXPECT_EQ(APIClient::readPoll(202, "x"), LinkPoll(LinkPending()));
    EXPECT_EQ(APIClient::readPoll(410, ""), LinkPoll(LinkGone()));
    EXPECT_EQ(APIClient::readPoll(200, R"({"token":"t","email":"e"})"),
              LinkPoll(Approved{"t", "e", std::nullopt}));
    const auto failure = [](int status, const char* body) {
        try {
            APIClient::readPoll(status, body);
        } catch (const ServiceError& thrown) {
            return thrown;
        }
        throw std::runtime_error("The poll is read.");
    };
    EXPECT_EQ(failure(200, "{}"), ServiceError::badAnswer());
    EXPECT_EQ(failure(500, R"({"error":"x"})"), ServiceError(Kind::server, "x", 500));
    EXPECT_EQ(failure(201, R"({"token":"t","email":"e"})").status(), 201);
}

TEST(APIClient, recognisesHandlesAndLocalServices) {
    for (const char* handle : {"abc", "a-b-c", "-9-", "abcdefghijklmnopqrstuvwx"})
        EXPECT_TRUE(APIClient::isValidHandle(handle)) << handle;
    for (const char* handle : {"", "ab", "Abc", "abc_d", "abcdefghijklmnopqrstuvwxy", "ab\u00E9"})
        EXPECT_FALSE(APIClient::isValidHandle(handle)) << handle;
    const auto isLocal = [](const char* base) {
        return APIClient(URL::parse(base).value(), "Test/1").isLocal();
    };
    EXPECT_TRUE(isLocal("http://LOCALHOST:8080/x"));
    EXPECT_TRUE(isLocal("https://127.0.0.1"));
    for (const char* base : {"http://[::1]/", "http://127.0.0.2/", "http://localhost.a.example/"})
        EXPECT_FALSE(isLocal(base)) << base;
}

TEST(APIClient, buildsItsRequests) {
    const APIClient client(URL::parse("https://a.example/v2/").value(), "Test/1");
    const auto expect = [](const URLRequest& request, const char* method, const char* url,
                           const Headers& more, const char* body) {
        Headers headers{{"Accept", "application/json"}, {"User-Agent", "Test/1"}};
        for (const Header& header : more)
            headers.add(header.name, header.value);
        EXPECT_EQ(request, (URLRequest{.url = URL::parse(url).value(),
                                       .method = method,
                                       .headers = headers,
                                       .body = body,
                                       .timeout = 60}))
            << url << request.body;
    };
    const Header json{"Content-Type", "application/json"}, token{"Authorization", "Bearer t"};
    expect(client.linkStartRequest(), "POST", "https://a.example/v2/api/app/link", {json}, "{}");
    expect(client.linkPollRequest("d\"\n"), "POST", "https://a.example/v2/api/app/link/poll",
           {json}, R"({"device":"d\"\n"})");
    expect(client.meRequest("t"), "GET", "https://a.example/v2/api/me", {token}, "");
    expect(client.signOutRequest("t"), "POST", "https://a.example/v2/api/auth/signout",
           {token, json}, "{}");
    expect(client.handleRequest("h", "t"), "POST", "https://a.example/v2/api/account/handle",
           {token, json}, R"({"handle":"h"})");
    EXPECT_EQ(APIClient(APIClient::defaultBase(), "").meRequest("").url.string(),
              "https://tarnweb.example/api/me");
}

} // namespace
} // namespace tarnwick
