#include "TarnwickServe/LocalServer.h"
#include "tests/TarnwickServe/RawClient.h"

#include <gtest/gtest.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <array>
#include <memory>

namespace tarnwick {
namespace {

// A client that takes any certificate and keeps it.
struct EncryptedClient {
    RawClient client;
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context{SSL_CTX_new(TLS_client_method()),
                                                              SSL_CTX_free};
    std::unique_ptr<SSL, decltype(&SSL_free)> session{SSL_new(context.get()), SSL_free};
    bool isConnected;

    explicit EncryptedClient(int port) : client(port) {
        SSL_set_fd(session.get(), client.socket());
        isConnected = SSL_connect(session.get()) == 1;
    }

    // With the end that TLS marks, so that no answer can be cut unnoticed.
    std::string answerTo(const std::string& bytes) {
        SSL_write(session.get(), bytes.data(), static_cast<int>(bytes.size()));
        std::string all;
        std::array<char, 4096> part{};
        int count = 0;
        while ((count = SSL_read(session.get(), part.data(), part.size())) > 0)
            all.append(part.data(), static_cast<std::size_t>(count));
        return SSL_get_error(session.get(), count) == SSL_ERROR_ZERO_RETURN ? all : "";
    }

    std::string fingerprint() const {
        const std::unique_ptr<X509, decltype(&X509_free)> shown(
            SSL_get1_peer_certificate(session.get()), X509_free);
        EXPECT_EQ(X509_check_ip_asc(shown.get(), "127.0.0.1", 0), 1);
        EXPECT_NE(X509_check_ip_asc(shown.get(), "127.0.0.2", 0), 1);
        std::array<unsigned char, 32> digest{};
        X509_digest(shown.get(), EVP_sha256(), digest.data(), nullptr);
        std::string text;
        for (const unsigned char byte : digest) {
            std::array<char, 4> digits{};
            std::snprintf(digits.data(), digits.size(), "%s%02X", text.empty() ? "" : ":", byte);
            text += digits.data();
        }
        return text;
    }
};

TEST(EncryptedServer, answersOnlyEncryptedRequests) {
    SiteNews news;
    Site site;
    const std::string page(1 << 20, 'x');
    site.resources[""] = {"text/html", std::make_shared<const std::string>(page)};
    news.publish(std::move(site));
    const LocalServer server({.addresses = {"127.0.0.1"},
                              .isEncrypted = true,
                              .limits = {.connections = 3, .requestSeconds = 1.0}},
                             news);
    EXPECT_TRUE(server.links().front().starts_with("https://127.0.0.1:"));
    for (int count = 0; count < 4; ++count) {
        EncryptedClient client(server.port());
        ASSERT_TRUE(client.isConnected);
        EXPECT_EQ(client.fingerprint(), server.fingerprint());
        EXPECT_EQ(bodyOf(client.answerTo(request(server.port(), "/"))), page);
    }
    EXPECT_EQ(answerTo(server.port(), request(server.port(), "/")).find("HTTP"), std::string::npos);
    // The beginning of a handshake, and nothing more.
    RawClient silent(server.port()), partial(server.port());
    partial.send(std::string_view("\x16\x03\x01\x02\x00\x01\x00", 7));
    EXPECT_EQ(partial.readAll(), "");
    EXPECT_EQ(silent.readAll(), "");
    EncryptedClient leaving(server.port());
    EXPECT_TRUE(leaving.isConnected);

    const LocalServer other({.addresses = {"127.0.0.1"}, .isEncrypted = true}, news);
    EXPECT_NE(other.fingerprint(), server.fingerprint());
}

} // namespace
} // namespace tarnwick
