// Tokens in files that only their owner may read, for desktops without a keyring.
#pragma once

#include "TarnwickPlatform/Secrets/Secret.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// A token cannot be kept or read. what() is one sentence that names the file, never the token.
struct TokenError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One file for each server, of mode 0600, in a folder of mode 0700, which is made when needed. A
// file is written whole or not at all.
class TokenFiles {
  public:
    explicit TokenFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}

    // $XDG_STATE_HOME/tarnwick, or ~/.local/state/tarnwick if that variable is not an absolute path
    // (XDG Base Directory Specification 0.8). Throws TokenError if HOME is not set.
    static std::filesystem::path usualFolder();

    // Absent without a file. Throws TokenError if others may read or write the file.
    std::optional<Secret> find(std::string_view server) const;
    void keep(std::string_view server, const Secret& token) const; // throws TokenError
    void forget(std::string_view server) const;                    // throws TokenError

    // Throws TokenError if the server's address is too long for a file's name.
    std::filesystem::path fileOf(std::string_view server) const;

  private:
    void makeFolder() const;

    std::filesystem::path folder_;
};

} // namespace tarnwick
