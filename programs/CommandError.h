// How a subcommand ends when it cannot do what it was asked.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// The statuses that the program ends with.
enum class Status : int {
    done = 0,
    failed = 1,  // the work was tried: the episode is wrong, the device cannot, the disk is full
    misused = 2, // the command line or a file named on it cannot be used
};

// what() is one sentence for the user.
struct CommandError : std::runtime_error {
    CommandError(Status status, const std::string& sentence)
        : std::runtime_error(sentence), status(status) {}
    Status status;
};

[[noreturn]] void misuse(const std::string& sentence);
[[noreturn]] void failure(const std::string& sentence);

// `text` in quotation marks, cut short where it is long, without control characters: fit to stand
// in a sentence.
std::string quoted(std::string_view text);

// Throws CommandError where a file cannot come to stand at `path` as things are now.
void checkOutput(std::string_view path);

// Writes to standard output. Throws CommandError when it cannot be written.
void print(std::string_view text);

} // namespace tarnwick
