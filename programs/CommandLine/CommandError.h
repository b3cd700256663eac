// The error that ends a command, and the output of commands.
#pragma once

#include "TarnwickBase/Quoted.h"
#include "TarnwickBase/Status.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// what() is one sentence for the user; `status` is the exit status.
struct CommandError : std::runtime_error {
    CommandError(Status status, const std::string& sentence)
        : std::runtime_error(sentence), status(status) {}
    Status status;
};

[[noreturn]] void misuse(const std::string& sentence);
[[noreturn]] void failure(const std::string& sentence);

// Writes to standard output. Throws CommandError if it cannot be written.
void print(std::string_view text);

} // namespace tarnwick
