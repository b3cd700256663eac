// The desktop's keeper of secrets, over the session's D-Bus (freedesktop.org's Secret Service API).
#pragma once

#include "TarnwickPlatform/Secrets/Secret.h"

#include <chrono>
#include <optional>
#include <string>

namespace tarnwick {

// Each call blocks for `patience` at most where the service does not answer; where there is a
// display on which it may be asking for its password, for a minute more. Nothing is printed, and
// nothing fails: where no service runs, or it refuses, it has nothing and keeps nothing.
class Keyring {
  public:
    explicit Keyring(std::chrono::milliseconds patience = std::chrono::seconds(3))
        : patience_(patience) {}

    std::optional<Secret> find(const std::string& server) const;
    // In place of an older one for that server. Whether it is kept.
    bool keep(const std::string& server, const Secret& token) const;
    void forget(const std::string& server) const;

  private:
    std::chrono::milliseconds patience_;
};

} // namespace tarnwick
