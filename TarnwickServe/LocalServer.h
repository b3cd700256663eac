// A server of HTTP/1.1, also over TLS, that shows the newest site to browsers and tells them of
// newer ones.
//
// Each connection answers one request. The server reads no file, so that no path leads to one.
#pragma once

#include "TarnwickServe/AccessToken.h"
#include "TarnwickServe/ServeLimits.h"
#include "TarnwickServe/SiteNews.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

struct ServeOptions {
    // Of IPv4 or IPv6. Later ones that do not exist here are left out.
    std::vector<std::string> addresses{"127.0.0.1", "::1"};
    int port = 0; // 0: any that is free
    std::optional<AccessToken> token{};
    bool isEncrypted = false; // https, with a certificate that the server makes for itself
    ServeLimits limits{};
};

class LocalServer {
  public:
    // Listens from now on. Borrows `news`. Throws ServeError if an address or the port cannot be
    // used.
    LocalServer(ServeOptions options, SiteNews& news);
    // Disconnects all clients; waits for a part of a second.
    ~LocalServer();
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    int port() const;
    // The addresses of the first page, "http://127.0.0.1:8642/" or "https://...": one for each
    // address of a network interface if the server listens to all of them.
    std::vector<std::string> links() const;
    // The SHA-256 digest of the certificate, as browsers show it; empty if not encrypted.
    std::string fingerprint() const;

  private:
    struct State;

    std::unique_ptr<State> state_;
};

} // namespace tarnwick
