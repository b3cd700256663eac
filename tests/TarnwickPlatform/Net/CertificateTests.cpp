#include "TarnwickPlatform/Net/URLSession.h"
#include "tests/TarnwickPlatform/Net/Kinds.h"
#include "tests/servers/CertificateAuthority.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

ServedAnswer hello(const ServedRequest&) {
    return {.body = "hello"};
}

TEST(Certificates, areCheckedForAuthorityHostAndTime) {
    CertificateAuthority authority, other;
    const auto good = authority.issue("IP:127.0.0.1,DNS:site.example");
    const auto expired = authority.issue("IP:127.0.0.1", "20200101000000Z");
    LoopbackServer server(hello, "127.0.0.1", &good), late(hello, "127.0.0.1", &expired);
    const std::string port = std::to_string(server.port());
    URLSession session({.certificateFile = authority.file(),
                        .connectTo = {"site.example:443:127.0.0.1:" + port,
                                      "other.example:443:127.0.0.1:" + port}});
    URLSession trustsAnother({.certificateFile = other.file()}), trustsTheSystem;

    EXPECT_EQ(session.data({.url = server.url("/")}).get().body, "hello");
    EXPECT_EQ(session.data({.url = *URL::parse("https://site.example/")}).get().body, "hello");

    const auto sentence = [](URLSession& asked, const URL& url) -> std::string {
        const auto error = failure(asked.data({.url = url}));
        return error && error->kind() == NetError::Kind::badCertificate ? error->what() : "";
    };
    EXPECT_EQ(sentence(session, *URL::parse("https://other.example/")),
              "The server's certificate is for another host.");
    EXPECT_EQ(sentence(session, late.url("/")), "The server's certificate has expired.");
    EXPECT_EQ(sentence(trustsAnother, server.url("/")),
              "The server's certificate is from an authority that is not trusted.");
    EXPECT_EQ(sentence(trustsTheSystem, server.url("/")),
              "The server's certificate is from an authority that is not trusted.");
}

TEST(Certificates, areNotAskedOfServersWithoutTLS) {
    LoopbackServer plain(hello);
    URLSession session;
    const auto url = URL::parse("https://127.0.0.1:" + std::to_string(plain.port()) + "/");
    EXPECT_EQ(kindOf(session.data({.url = *url})), NetError::Kind::secureConnectionFailed);
}

} // namespace
} // namespace tarnwick
