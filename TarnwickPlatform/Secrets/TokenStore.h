// Where the tokens of signed-in accounts are kept between runs.
#pragma once

#include "TarnwickPlatform/Secrets/Keyring.h"
#include "TarnwickPlatform/Secrets/TokenFiles.h"

#include <optional>
#include <string>

namespace tarnwick {

// One token a server: in the desktop's keyring where there is one, else in a file. Blocks as the
// keyring does.
class TokenStore {
  public:
    explicit TokenStore(TokenFiles files, Keyring keyring = Keyring())
        : files_(std::move(files)), keyring_(keyring) {}

    // Nothing where none is kept. Throws TokenError.
    std::optional<Secret> find(const std::string& server) const;
    // In place of an older one. Gives where it is now, for people. Throws TokenError.
    std::string keep(const std::string& server, const Secret& token) const;
    // Throws TokenError.
    void forget(const std::string& server) const;

  private:
    TokenFiles files_;
    Keyring keyring_;
};

} // namespace tarnwick
