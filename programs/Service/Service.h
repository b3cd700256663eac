// The sharing service, as the commands that talk to it reach it.
#pragma once

#include "TarnwickCore/Service/APIClient.h"
#include "TarnwickPlatform/Secrets/TokenStore.h"
#include "programs/CommandLine/Arguments.h"

#include <optional>
#include <string>

namespace tarnwick {

class Service {
  public:
    // The one that --server names, else TARNWICK_SERVER, else the site's own. From here on the
    // process leaves no core dump. Throws CommandError for an address that is none, or one at which
    // a token would go through a network in the open.
    explicit Service(const Arguments& arguments);

    const APIClient& client() const { return client_; }
    // Whether it is another than the site's own.
    bool isGiven() const { return isGiven_; }

    // Of the account that is signed in; nothing where none is. Throws TokenError.
    std::optional<Secret> token() const;
    // Throws CommandError where no account is signed in.
    Secret wantedToken() const;
    std::string keep(const Secret& token) const; // gives where, for people; throws TokenError
    void forgetToken() const;                    // throws TokenError

  private:
    bool isGiven_;
    APIClient client_;
};

constexpr Option serverOption{"--server", "URL",
                              "the service; default: TARNWICK_SERVER, or the site"};

} // namespace tarnwick
