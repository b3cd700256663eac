// What a server of https shows of itself: a key and a certificate that it has signed itself.
#pragma once

#include <openssl/types.h>

#include <memory>
#include <span>
#include <string>

namespace tarnwick {

// Both are made anew for each server and never written, because a key that lies in a file can be
// stolen. So no browser knows the certificate; a visitor compares the fingerprint.
class Identity {
  public:
    // For servers at the addresses, of IPv4 or IPv6, for 30 days. Throws ServeError.
    explicit Identity(std::span<const std::string> addresses);
    ~Identity();
    Identity(Identity&&) noexcept;
    Identity& operator=(Identity&&) = delete;

    // The SHA-256 digest of the certificate, as browsers show it: "3F:05:...".
    const std::string& fingerprint() const { return fingerprint_; }

    // A session of a client on a socket that does not block; null without memory. Any thread.
    std::shared_ptr<SSL> session(int socket) const;

  private:
    std::shared_ptr<SSL_CTX> context_;
    std::string fingerprint_;
};

} // namespace tarnwick
