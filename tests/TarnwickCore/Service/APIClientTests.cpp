#include "TarnwickCore/Service/APIClient.h"
#include "TarnwickCore/Service/LatestRelease.h"
#include "tests/TarnwickCore/Service/ServiceCalls.h"
#include "tests/servers/CertificateAuthority.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>

namespace tarnwick {
namespace {

using Kind = ServiceError::Kind;

struct Service {
    Service(int status, const std::string& body, const Headers& headers = {})
        : server(status, body, headers) {}

    FixedServer server;
    APIClient client{server.url("/root"), "Test/1"};

    ServedRequest request() const { return server.requests().at(0); }
};

ShareUpload upload() {
    return {.title = "T",
            .source = "// @forked-from s/a1\n",
            .params = {{"a", 0.1F, 0, 1, ""}},
            .loop = std::string("\0\0\0\x08"
                                "ftyp",
                                8) +
                    std::string(std::size_t{3} << 20, 'm'),
            .thumb = "\xFF\xD8\xFF\xE0"};
}

TEST(APIClient, signsIn) {
    const Service start(201, R"({"device":"d","code":"AB-12","url":"https://a.example/l"})");
    EXPECT_EQ(start.client.startLink().get().code, "AB-12");
    EXPECT_EQ(start.request().target, "/root/api/app/link");

    const Service approved(200, R"({"token":"t","email":"e"})");
    EXPECT_EQ(approved.client.pollLink("d").get(), LinkPoll(Approved{"t", "e", std::nullopt}));
    EXPECT_EQ(Service(202, "").client.pollLink("d").get(), LinkPoll(LinkPending()));
}

// docs/service.md has one heading for each request, "### `POST /api/me`", and no other.
TEST(APIClient, sendsTheRequestsOfItsPage) {
    const APIClient client(APIClient::defaultBase(), "Test/1");
    std::multiset<std::string> sent{"GET " + URL::parse(LatestRelease::feed())->decodedPath()};
    for (const URLRequest& request :
         {client.linkStartRequest(), client.linkPollRequest("d"), client.meRequest("t"),
          client.handleRequest("h", "t"), client.signOutRequest("t"),
          client.shareRequest(upload(), "t", "b")})
        sent.insert(request.method + " " + request.url.decodedPath());
    std::multiset<std::string> described;
    std::ifstream page(SERVICE_PAGE);
    for (std::string line; std::getline(page, line);)
        if (line.starts_with("### `"))
            described.insert(line.substr(5, line.size() - 6));
    EXPECT_EQ(described, sent);
}

TEST(APIClient, asksForTheAccountAndNamesIt) {
    const Service me(200, R"({"email":"e","handle":"h"})");
    EXPECT_EQ(me.client.me("t").get(), (Me{"e", "h"}));
    EXPECT_EQ(*me.request().headers.find("Authorization"), "Bearer t");
    EXPECT_EQ(failureOf<ServiceError>(Service(201, R"({"email":"e"})").client.me("t")).status(),
              201);

    const Service named(200, R"({"handle":"given"})");
    EXPECT_EQ(named.client.setHandle("asked", "t").get(), "given");
    EXPECT_EQ(Service(299, "{}").client.setHandle("asked", "t").get(), "asked");
    EXPECT_EQ(failureOf<ServiceError>(
                  Service(409, R"({"error":"Taken."})").client.setHandle("asked", "t")),
              ServiceError(Kind::server, "Taken.", 409));

    const Service out(418, "x");
    EXPECT_EQ(out.client.send(out.client.signOutRequest("t")).get().response.status, 418);
}

TEST(APIClient, sharesWithItsProgress) {
    const Service service(201, R"({"id":"7","url":"https://a.example/s/7"})");
    std::vector<double> progress;
    const auto shared =
        service.client.share(upload(), "t", [&](double part) { progress.push_back(part); }).get();
    EXPECT_EQ(shared, (Shared{"7", URL::parse("https://a.example/s/7").value()}));
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(progress.back(), 1);
    const ServedRequest request = service.request();
    EXPECT_EQ(request.target, "/root/api/shaders");
    EXPECT_EQ(*request.headers.find("Authorization"), "Bearer t");
    const std::vector<ServedPart> parts{
        {"meta", "", "application/json", upload().metaJSON()},
        {"source", "source.metal", "text/plain; charset=utf-8", upload().source},
        {"loop", "loop.mp4", "video/mp4", upload().loop},
        {"thumb", "thumb.jpg", "image/jpeg", upload().thumb}};
    EXPECT_TRUE(request.parts == parts); // not EXPECT_EQ: the text would fill pages
    EXPECT_EQ(service.client.shareRequest(upload(), "t", "B").timeout, 300);

    EXPECT_EQ(failureOf<ServiceError>(Service(204, "").client.share(upload(), "t")),
              ServiceError(Kind::server, "Tarnweb answered 204.", 204));
    ShareUpload infinite = upload();
    infinite.params[0].max = INFINITY;
    EXPECT_EQ(failureOf<ServiceError>(service.client.share(infinite, "t")).what(),
              infinite.problems().at(0));
}

TEST(APIClient, receivesARefusalBeforeTheUploadEnds) {
    const HostileServer server(silentAfter("HTTP/1.1 413 x\r\nContent-Length: 23\r\n\r\n"
                                           R"({"error":"That is big"})"));
    ShareUpload large = upload();
    large.loop.resize(20'000'000);
    EXPECT_EQ(failureOf<ServiceError>(APIClient(server.url(), "Test/1").share(large, "t")),
              ServiceError(Kind::server, "That is big", 413));
}

TEST(APIClient, makesParallelCallsOnOneSession) {
    const Service service(200, R"({"email":"e"})");
    std::vector<std::future<Me>> calls;
    for (int call = 0; call < 5; ++call)
        calls.push_back(service.client.me("t"));
    for (auto& call : calls)
        EXPECT_EQ(call.get().email, "e");
}

TEST(APIClient, givesOneSentenceForEachHostileAnswer) {
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const std::string closes = ok + "Connection: close\r\n\r\n";
    struct Row {
        const char* what;
        HostileServer::Script script;
        Kind kind;
    };
    const auto sends = [](std::string answer) {
        return [answer = std::move(answer)](HostileConnection& connection) {
            connection.readHead();
            connection.send(answer);
        };
    };
    for (const Row& row : std::vector<Row>{
             {"nothing", [](HostileConnection&) {}, Kind::network},
             {"no HTTP", sends("SSH-2.0\r\n\r\n"), Kind::badAnswer},
             {"a part", sends(ok + "Content-Length: 50\r\n\r\n{"), Kind::network},
             {"a wrong length", sends(ok + "Content-Length: 1\r\n\r\n{}"), Kind::badAnswer},
             {"no JSON", sends(closes + "<html>"), Kind::badAnswer},
             {"NULs", sends(closes + std::string(9, '\0')), Kind::badAnswer},
             {"deep JSON", sends(closes + std::string(900'000, '[')), Kind::badAnswer},
             {"another encoding", sends(ok + "Content-Encoding: gzip\r\n\r\n\x1F\x8B"),
              Kind::badAnswer},
             {"100 MB", endless(closes), Kind::network},
             {"100 MB announced", endless(ok + "Content-Length: 104857600\r\n\r\n"), Kind::network},
             {"100 MB of headers", endless(ok + "X: "), Kind::network},
             {"itself again", sends("HTTP/1.1 307 x\r\nLocation: /\r\nContent-Length: 0\r\n\r\n"),
              Kind::network},
         }) {
        const HostileServer server(row.script);
        const auto failure = failureOf<ServiceError>(APIClient(server.url(), "Test/1").me("t"));
        EXPECT_EQ(failure.kind(), row.kind) << row.what << ": " << failure.what();
        EXPECT_TRUE(std::string(failure.what()).ends_with('.')) << failure.what();
    }
}

TEST(APIClient, endsAtTheTimeoutOrAStop) {
    const HostileServer drips([](HostileConnection& connection) {
        connection.readHead();
        connection.send("HTTP/1.1 200 OK\r\n\r\n");
        while (connection.send(" "))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    });
    const APIClient client(drips.url(), "Test/1");
    URLRequest brief = client.meRequest("t");
    brief.timeout = 0.1;
    EXPECT_EQ(failureOf<ServiceError>(client.send(brief)).kind(), Kind::network);

    std::stop_source stop;
    std::future<Me> call = client.me("t", stop.get_token());
    EXPECT_EQ(call.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    stop.request_stop();
    EXPECT_EQ(failureOf<ServiceError>(std::move(call)).kind(), Kind::network);
}

TEST(APIClient, connectsOnlyToTrustedServers) {
    CertificateAuthority authority;
    const ServerCertificate certificate = authority.issue("IP:127.0.0.1");
    const LoopbackServer server([](const ServedRequest&) { return ServedAnswer{.body = "{}"}; },
                                "127.0.0.1", &certificate);
    const APIClient stranger(server.url("/"), "Test/1");
    EXPECT_EQ(failureOf<ServiceError>(stranger.me("t")).kind(), Kind::network);
    EXPECT_TRUE(server.requests().empty());
    SessionConfiguration trusting = APIClient::sessionConfiguration("Test/1");
    trusting.certificateFile = authority.file();
    const APIClient client(server.url("/"), "Test/1", std::make_shared<URLSession>(trusting));
    EXPECT_EQ(client.setHandle("asked", "t").get(), "asked");
}

TEST(APIClient, sendsTokensToTheServiceOnly) {
    const Service other(200, R"({"email":"e"})");
    const Service service(307, "", {{"Location", other.server.url("/x").string()}});
    EXPECT_EQ(service.client.me("secret-7").get().email, "e");
    EXPECT_EQ(other.request().headers.find("Authorization"), nullptr);

    for (const char* base : {"http://tarnweb.example/", "http://127.0.0.2:1/", "http://[::1]:1/",
                             "ftp://tarnweb.example/"}) {
        const APIClient client(URL::parse(base).value(), "Test/1");
        EXPECT_EQ(failureOf<ServiceError>(client.me("secret-7")),
                  ServiceError(Kind::network, "Tarnweb is only talked to over https, and the "
                                              "address given is not https."));
    }
    const Service careless(401, R"({"error":"secret-7 is not a token, secret-7"})");
    EXPECT_EQ(failureOf<ServiceError>(careless.client.me("secret-7")),
              ServiceError(Kind::signedOut, "* is not a token, *"));

    const auto closed = URL::parse("https://127.0.0.1:1/").value();
    for (const char* token : {"secret-7", "secret-7\r\nX: y"}) {
        const auto failure = failureOf<ServiceError>(APIClient(closed, "Test/1").me(token));
        EXPECT_EQ(std::string(failure.what()).find("secret"), std::string::npos);
    }
}

} // namespace
} // namespace tarnwick
