// How a subcommand ends when it cannot do what it was asked.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// The statuses that the program ends with; the same cause has the same status in all commands. The
// saver's program has the same ones.
enum class Status : int {
    done = 0,
    // The command line is right, and the work failed: the episode does not compile, is not of the
    // kind that the command takes or has no finite sound; the output cannot be written; the device,
    // the memory or the service fails; the work was cancelled.
    failed = 1,
    // The command line is to be changed: an unknown option, a missing or invalid value, a name that
    // the episode does not declare; an input that cannot be read as what it is to be; the name of
    // an output that is an input's, ends otherwise or has something else standing there.
    misused = 2,
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

// Writes to standard output. Throws CommandError when it cannot be written.
void print(std::string_view text);

} // namespace tarnwick
