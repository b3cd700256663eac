// The desktop's keyring, over the session's D-Bus (freedesktop.org's Secret Service API).
#pragma once

#include "TarnwickPlatform/Secrets/Secret.h"

#include <chrono>
#include <optional>
#include <string>

namespace tarnwick {

// Each call blocks at most for `patience` if the service does not answer, and a minute longer if
// there is a display on which the service may ask for its password. Nothing is printed or thrown:
// without a service, or if it refuses, find() is absent and keep() false.
class Keyring {
  public:
    explicit Keyring(std::chrono::milliseconds patience = std::chrono::seconds(3))
        : patience_(patience) {}

    bool answers() const;                                        // whether there is a keyring
    std::optional<Secret> find(const std::string& server) const; // the token of a server
    // Replaces an older token of that server. Whether the token is kept.
    bool keep(const std::string& server, const Secret& token) const;
    void forget(const std::string& server) const;

  private:
    std::chrono::milliseconds patience_;
};

} // namespace tarnwick
