// The error that ends a command, and the output of commands.
#pragma once

#include "TarnwickBase/Quoted.h"
#include "TarnwickBase/Status.h"
#include "TarnwickCore/Text/TerminalText.h"

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

// Writes "tarnwick: SENTENCE" to standard error, as one line that is safe for a terminal. All
// sentences of commands, and those of errors, are written here.
void tell(std::string_view sentence);

// Writes to standard output. Throws CommandError if it cannot be written.
void print(std::string_view text);

// The same for foreign text of several lines, which a terminal shows by terminalLines().
void printForeign(std::string_view text);

} // namespace tarnwick
