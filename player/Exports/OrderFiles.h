// The files of one child process: a folder of its own, and the place of its unfinished output.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"
#include "player/Exports/Order.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::player {

// The files cannot be written. what() is one sentence.
struct OrderFilesError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One thread at a time. All functions that touch files block. The destructor removes the files,
// and the output unless it was moved to its place. If the player is killed, the next program that
// writes in the same folder removes them (TemporaryFolder).
class OrderFiles {
  public:
    // Throws OrderFilesError.
    explicit OrderFiles(const Order& order);

    // The command line, with the paths of the files.
    std::vector<std::string> words() const;
    // The path of that name in the order's own folder.
    std::filesystem::path path(const std::string& name) const;
    // Where the child writes the output. Requires an output.
    std::filesystem::path unfinished() const;

    // Moves the output to its place, or to another name beside it (NewPlace.h), which is returned.
    // Throws OrderFilesError. Requires an output.
    std::filesystem::path finish();

    // A sentence of the child, with the names of the temporary folders removed.
    std::string shown(std::string sentence) const;

  private:
    Order order_;
    TemporaryFolder own_;
    std::unique_ptr<TemporaryFolder> outputs_; // beside the output; null without one
};

} // namespace tarnwick::player
