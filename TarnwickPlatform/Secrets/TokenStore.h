// Keeps the tokens of signed-in accounts between runs.
#pragma once

#include "TarnwickPlatform/Secrets/Keyring.h"
#include "TarnwickPlatform/Secrets/TokenFiles.h"

#include <optional>
#include <string>

namespace tarnwick {

// One token for each server: in the desktop's keyring if there is one, otherwise in a file. Blocks
// as Keyring does.
class TokenStore {
  public:
    explicit TokenStore(TokenFiles files, Keyring keyring = Keyring())
        : files_(std::move(files)), keyring_(keyring) {}

    // Absent without a token. Throws TokenError.
    std::optional<Secret> find(const std::string& server) const;
    // Replaces an older token. Returns the place as a text for the user. Throws TokenError.
    std::string keep(const std::string& server, const Secret& token) const;
    // Throws TokenError.
    void forget(const std::string& server) const;

  private:
    TokenFiles files_;
    Keyring keyring_;
};

} // namespace tarnwick
