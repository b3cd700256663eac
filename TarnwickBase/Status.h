// The exit statuses of the programs.
#pragma once

namespace tarnwick {

// The same cause gives the same status in all commands and in the saver.
enum class Status : int {
    done = 0,
    // The command line is right and the work failed: the episode does not compile, is not of a kind
    // that the command accepts or has no finite sound; the output cannot be written; the device,
    // the memory or the service fails; the work was cancelled.
    failed = 1,
    // The command line is wrong: an unknown option, a missing or invalid value, a name that the
    // episode does not declare; an input that cannot be read or has the wrong format; an output
    // that has the name of an input, has the wrong ending or would replace a file of another kind.
    misused = 2,
};

} // namespace tarnwick
