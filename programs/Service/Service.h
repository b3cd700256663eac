// The sharing service, for the commands that use it.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Service/APIClient.h"
#include "TarnwickPlatform/Secrets/TokenStore.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace tarnwick {

class Service {
  public:
    // The service of --server, else of TARNWICK_SERVER, else the site. The process writes no core
    // dump after this. Throws CommandError for an invalid address, or one to which a token would be
    // sent unencrypted over a network.
    explicit Service(const Arguments& arguments);

    const APIClient& client() const { return client_; }
    // Whether it is not the site.
    bool isGiven() const { return isGiven_; }

    // The token of the signed-in account; nothing without one. Throws TokenError.
    std::optional<Secret> token() const;
    // Throws CommandError if no account is signed in.
    Secret wantedToken() const;
    std::string keep(const Secret& token) const; // returns the place, for people; throws TokenError
    void forgetToken() const;                    // throws TokenError

  private:
    bool isGiven_;
    APIClient client_;
};

// {"email": ..., "handle": ...}; the handle is null until one is chosen.
nlohmann::ordered_json accountJSON(const std::string& email,
                                   const std::optional<std::string>& handle);

constexpr std::array<Option, 1> serviceOptions{{
    {.name = "--server",
     .value = "URL",
     .help = "address of the service",
     .byDefault = "TARNWICK_SERVER of the environment, or the site"},
}};

} // namespace tarnwick
