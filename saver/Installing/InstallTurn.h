// The turn of an installation or removal of a saver: they read and rewrite the same files.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace tarnwick {

// Another program does not end its turn. what() is one sentence.
struct InstallTurnError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// While it exists, other turns wait, also those of other processes. The system ends the turn of a
// process that is killed.
class InstallTurn {
  public:
    // Makes the folder of the savers. Waits at most 8 s, then throws InstallTurnError; throws
    // std::filesystem::filesystem_error if the folder cannot be made.
    explicit InstallTurn(const std::filesystem::path& savers);
    ~InstallTurn();
    InstallTurn(const InstallTurn&) = delete;
    InstallTurn& operator=(const InstallTurn&) = delete;

  private:
    int folder_ = -1; // locked, where the file system has locks
};

} // namespace tarnwick
