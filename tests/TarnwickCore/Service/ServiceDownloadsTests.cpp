#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickCore/Service/APIClient.h"
#include "TarnwickCore/Service/ReleaseDownload.h"
#include "TarnwickCore/Service/ShaderDownload.h"
#include "tests/TarnwickCore/Service/ServiceCalls.h"

#include <gtest/gtest.h>

#include <fstream>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

std::future<std::string> fetch(const URL& source) {
    return ShaderDownload::fetch({.source = source, .item = {}, .fileName = "a.metal"},
                                 APIClient::makeSession("Test/1"), "Test/2");
}

ShaderDownload::Problem fetchProblem(const URL& source) {
    return failureOf<ShaderDownload::Problem>(fetch(source));
}

TEST(ShaderDownload, returnsTextUpToItsLimit) {
    const std::string text = "é\0"
                             "\uFEFF" +
                             std::string(300 * 1024 - 5, 'a');
    const FixedServer server(200, text);
    EXPECT_TRUE(fetch(server.url("/s/a%2e1/source.metal")).get() == text);
    const ServedRequest request = server.requests().at(0);
    EXPECT_EQ(request.target, "/s/a%2e1/source.metal");
    EXPECT_EQ(*request.headers.find("Accept"), "text/plain");
    EXPECT_EQ(*request.headers.find("User-Agent"), "Test/2");
    EXPECT_EQ(fetch(FixedServer(200, "").url("/a.metal")).get(), "");
}

TEST(ShaderDownload, namesTheReasonOfAnError) {
    using Problem = ShaderDownload::Problem;
    using Kind = Problem::Kind;
    const auto problem = [](const FixedServer& server) { return fetchProblem(server.url("/a")); };
    EXPECT_EQ(problem(FixedServer(404, "")), Problem(Kind::status, {}, 404));
    EXPECT_STREQ(Problem(Kind::status, {}, 404).what(), "Tarnweb answered 404 for that shader.");
    EXPECT_EQ(problem(FixedServer(206, "")).status(), 206);
    EXPECT_STREQ(problem(FixedServer(200, std::string(307'201, 'a'))).what(),
                 "That file is over 300 KB, which no shader is: it was not opened.");
    EXPECT_STREQ(problem(FixedServer(200, "a\xC3")).what(),
                 "That file is not UTF-8 text: it was not opened.");

    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const HostileServer unannounced(endless(ok + "\r\n"));
    EXPECT_EQ(fetchProblem(unannounced.url()).kind(), Kind::tooLarge);
    const HostileServer announced(silentAfter(ok + "Content-Length: 307201\r\n\r\n"));
    EXPECT_EQ(fetchProblem(announced.url()).kind(), Kind::tooLarge);
    const HostileServer cut(ok + "Content-Length: 9\r\n\r\nabc");
    EXPECT_EQ(fetchProblem(cut.url()).kind(), Kind::network);
    EXPECT_STREQ(fetchProblem(cut.url()).what(), "The connection to the server was lost.");
    const HostileServer refused("HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nabc");
    for (int time = 0; time < 20; ++time)
        EXPECT_EQ(fetchProblem(refused.url()), Problem(Kind::status, {}, 404));
}

TEST(ShaderDownload, followsRedirectsWithinTheOriginOnly) {
    const LoopbackServer server([](const ServedRequest& request) {
        const std::string to = request.target.substr(3);
        return request.target == "/ok" ? ServedAnswer{.body = "text"}
                                       : ServedAnswer{.status = 302, .headers = {{"Location", to}}};
    });
    EXPECT_EQ(fetch(server.url("/r?/ok")).get(), "text");
    EXPECT_EQ(fetch(server.url("/r?" + server.url("/ok").string())).get(), "text");
    const FixedServer other(200, "stolen");
    const std::string port = std::to_string(server.port());
    for (const std::string& to :
         {other.url("/").string(), "http://localhost:" + port + "/ok",
          std::string("http://127.0.0.1/ok"), "https://127.0.0.1:" + port + "/ok",
          "http://u@127.0.0.1:" + port + "/ok", std::string("file:///etc/passwd")})
        EXPECT_EQ(fetchProblem(server.url("/r?" + to)).status(), 302) << to;
    EXPECT_TRUE(other.requests().empty());
}

class ReleaseDownloadTest : public testing::Test {
  protected:
    void SetUp() override { fs::create_directory(folder_); }

    ReleaseDownload::Error::Kind problem(const LatestRelease& release) {
        const auto thrown = failureOf<ReleaseDownload::Error>(
            ReleaseDownload::file(release, folder_ / "release", session_, "Test/1"));
        EXPECT_TRUE(std::string_view(thrown.what()).ends_with('.')) << thrown.what();
        EXPECT_TRUE(fs::is_empty(folder_)) << thrown.what();
        return thrown.kind();
    }

    const TemporaryFolder temporary_;
    const fs::path folder_ = temporary_.path() / "downloads";
    const std::shared_ptr<URLSession> session_ = APIClient::makeSession("Test/1");
};

// The digest of a million times "a" (FIPS 180-4, third example).
constexpr const char* millionDigest =
    "CDC76E5C9914FB9281A1C7E284D73E67F1809A48A497200E046D39CCC7112CD0";

TEST_F(ReleaseDownloadTest, keepsAFileWithTheAnnouncedDigest) {
    const FixedServer server(200, std::string(1'000'000, 'a'));
    double progress = 0;
    ReleaseDownload::file({.url = server.url("/r").string(), .sha256 = millionDigest},
                          folder_ / "release", session_, "Test/1",
                          [&](double part) { progress = part; })
        .get();
    EXPECT_EQ(fs::file_size(folder_ / "release"), 1'000'000);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1);
    EXPECT_EQ(progress, 1);
}

TEST_F(ReleaseDownloadTest, keepsNothingElse) {
    using Kind = ReleaseDownload::Error::Kind;
    const FixedServer good(200, std::string(1'000'000, 'a')), bad(200, std::string(999'999, 'a'));
    const std::string url = good.url("/r").string();
    EXPECT_EQ(problem({.url = bad.url("/r").string(), .sha256 = millionDigest}), Kind::wrongDigest);
    EXPECT_EQ(problem({.url = url}), Kind::noDigest);
    EXPECT_EQ(problem({.url = url, .sha256 = std::string(64, 'g')}), Kind::noDigest);
    EXPECT_EQ(problem({.url = url, .sha256 = ""}), Kind::noDigest);
    EXPECT_EQ(problem({.url = "http://a.example/r", .sha256 = millionDigest}), Kind::notSecure);
    EXPECT_EQ(problem({.url = "/r", .sha256 = millionDigest}), Kind::notSecure);
    EXPECT_EQ(good.requests().size(), 0U);

    const std::string ok = "HTTP/1.1 200 OK\r\nContent-Length: ";
    const HostileServer cut(ok + "1000000\r\n\r\naaaa"),
        large(silentAfter(ok + "1000000001\r\n\r\n"));
    const FixedServer gone(404, "");
    EXPECT_EQ(problem({.url = cut.url().string(), .sha256 = millionDigest}), Kind::network);
    EXPECT_EQ(problem({.url = large.url().string(), .sha256 = millionDigest}), Kind::tooLarge);
    EXPECT_EQ(problem({.url = gone.url("/").string(), .sha256 = millionDigest}), Kind::status);
    EXPECT_EQ(failureOf<ReleaseDownload::Error>(
                  ReleaseDownload::file({.url = url, .sha256 = millionDigest},
                                        folder_ / "missing" / "release", session_, "Test/1"))
                  .kind(),
              Kind::notWritten);
}

TEST_F(ReleaseDownloadTest, readsTheDocument) {
    const auto document = [&](const URL& feed) {
        return ReleaseDownload::document(feed, session_, "Test/1");
    };
    const FixedServer server(200, R"({"version":"1.2","build":7,"url":"https://a.example/r"})");
    EXPECT_EQ(document(server.url("/app/latest.json")).get().build, 7);
    EXPECT_THROW(document(FixedServer(200, "{}").url("/")).get(), LatestReleaseError);
    EXPECT_THROW(document(FixedServer(500, "{}").url("/")).get(), ReleaseDownload::Error);
    EXPECT_THROW(document(URL::parse("http://media.tarnweb.example/").value()).get(),
                 ReleaseDownload::Error);
    const HostileServer large(endless("HTTP/1.1 200 OK\r\n\r\n"));
    EXPECT_THROW(document(large.url()).get(), ReleaseDownload::Error);
}

} // namespace
} // namespace tarnwick
